#include "tests/support/CamhookProcess.h"

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

Outcome camhookWith(const std::string& words, const std::string& input, const std::string& errors) {
  const std::string command = "exec " + errors + "; cd '" + kScenarios.string() +
                              "' && printf '%s' '" + input + "' | " CAMHOOK_COMMAND " " + words;
  FILE* pipe = popen(command.c_str(), "r");
  Outcome outcome;
  std::array<char, 65536> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe)) {
    outcome.output.append(block.data(), size);
  }
  const int status = pclose(pipe);
  outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

std::vector<std::string> namesOf(const std::string& extension) {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(kScenarios)) {
    if (file.path().extension() == extension) names.push_back(file.path().stem());
  }
  std::ranges::sort(names);
  return names;
}
