// Runs the camhook program as users do, and reads files of the source tree.

#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

inline const std::filesystem::path kSourceRoot = CAM_SOURCE_DIR;
inline const std::filesystem::path kScenarios = kSourceRoot / "scenarios";

struct Outcome {
  int status = -1;
  std::string output;
};

/// Runs camhook in scenarios/ with `words` as its command line, which a shell expands, and `input`
/// on standard input. `errors` redirects standard error; by default it is part of the output.
Outcome camhookWith(const std::string& words, const std::string& input = "",
                    const std::string& errors = "2>&1");

std::string contentOf(const std::filesystem::path& file);

/// Returns the sorted names, without extension, of the files in scenarios/ with this extension.
std::vector<std::string> namesOf(const std::string& extension);

/// Compares pages of docs/ with those that the tool writes from these scenarios.
void expectStoredPages(const std::string& scenarios, std::initializer_list<const char*> pages);
