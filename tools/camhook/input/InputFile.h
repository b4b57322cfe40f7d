// Reads and writes files.

#pragma once

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include "tools/camhook/input/InputError.h"
#include "tools/camhook/input/PlainText.h"

namespace camhook {

/// The name for messages; "standard input" for "-".
std::string nameOfInput(const std::string& file);

/// Reads a file or pipe, or standard input for "-". Throws InputError, also for an input longer
/// than 1 GiB.
std::string readInput(const std::string& file);

/// Calls `read` with the file's content and returns the result. An InputError names the file.
auto readFile(const std::string& file, auto read) {
  try {
    return read(readInput(file));
  } catch (const InputError& error) {
    throw InputError(error.faults(), nameOfInput(file));
  }
}

/// Calls `write` with the stream of a file, or of standard output for "-". Throws InputError if the
/// file cannot be written.
void writeFile(const std::string& file, auto write) {
  if (file == "-") return write(std::cout);
  std::ofstream out(file, std::ios::binary);
  if (out) write(out);
  out.close();
  if (!out) {
    throw InputError(printable(file) + ": cannot be written: " + std::strerror(errno));
  }
}

}  // namespace camhook
