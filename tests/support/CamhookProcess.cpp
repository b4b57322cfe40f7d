#include "tests/support/CamhookProcess.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

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

void expectStoredPages(const std::string& scenarios, std::initializer_list<const char*> pages) {
  const std::filesystem::path folder =
      testing::TempDir() + "/camhook_pages_" + std::to_string(getpid());
  std::filesystem::create_directory(folder);
  EXPECT_EQ(camhookWith("reference " + folder.string() + ' ' + scenarios, "", "2>/dev/null").status,
            0);
  for (const char* page : pages) {
    EXPECT_EQ(contentOf(kSourceRoot / "docs" / page), contentOf(folder / page))
        << "to write it: ./camhook reference docs scenarios/*.json";
  }
  std::filesystem::remove_all(folder);
}
