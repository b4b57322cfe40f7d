// The camhook program as its users run it.

#pragma once

#include <filesystem>
#include <string>

inline const std::filesystem::path kSourceRoot = CAM_SOURCE_DIR;

struct Outcome {
  int status = -1;
  std::string output;
};

/// Runs camhook with these words of a shell's command line, in the folder of the scenarios, with
/// `input` on standard input. `errors` says where standard error goes.
Outcome camhookWith(const std::string& words, const std::string& input = "",
                    const std::string& errors = "2>&1");

std::string contentOf(const std::filesystem::path& file);
