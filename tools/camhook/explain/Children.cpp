#include "tools/camhook/explain/Children.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <string>
#include <thread>

#include "tools/camhook/input/InputError.h"

namespace camhook {
namespace {

struct Child {
  std::size_t work = 0;
  pid_t process = -1;
  int pipe = -1;
  std::string output;
};

/// Nothing of the parent's is flushed or destroyed on the way out.
[[noreturn]] void runAndLeave(const ChildWork& work, int pipe) {
  Json result;
  try {
    result["made"] = work();
  } catch (const InputError& error) {
    result["refused"] = error.what();
  }
  const std::string text = result.dump();
  for (std::size_t written = 0; written < text.size();) {
    const ssize_t size = write(pipe, &text[written], text.size() - written);
    if (size <= 0) _exit(1);
    written += static_cast<std::size_t>(size);
  }
  _exit(0);
}

Child start(const ChildWork& work, std::size_t index) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw InputError("camhook: no pipe can be made");
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process == 0) {
    // The parent may have ended before the wish was heard.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    close(ends[0]);
    runAndLeave(work, ends[1]);
  }
  close(ends[1]);
  if (process < 0) {
    close(ends[0]);
    throw InputError("camhook: no process can be started");
  }
  return {.work = index, .process = process, .pipe = ends[0], .output = {}};
}

/// Takes what the child has written. False at the end of it.
bool readSome(Child& child) {
  std::array<char, 65536> block{};
  const ssize_t size = read(child.pipe, block.data(), block.size());
  if (size > 0) child.output.append(block.data(), static_cast<std::size_t>(size));
  return size > 0;
}

Json finish(const Child& child) {
  close(child.pipe);
  int status = 0;
  waitpid(child.process, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw InputError("camhook: a replay ended the process that ran it");
  }
  Json result = Json::parse(child.output);
  if (result.contains("refused")) throw InputError(result["refused"].get<std::string>());
  return std::move(result["made"]);
}

/// Ends the children that are still there when something is thrown.
struct Running {
  std::vector<Child> children;

  Running() = default;
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running() {
    for (const Child& child : children) {
      kill(child.process, SIGKILL);
      close(child.pipe);
      waitpid(child.process, nullptr, 0);
    }
  }
};

}  // namespace

std::vector<Json> inChildren(const std::vector<ChildWork>& works,
                             const std::function<void(const Json& made)>& onDone) {
  const std::size_t most = std::max(1U, std::thread::hardware_concurrency());
  std::vector<Json> results(works.size());
  Running running;
  std::vector<Child>& children = running.children;
  for (std::size_t next = 0; next < works.size() || !children.empty();) {
    while (next < works.size() && children.size() < most) {
      children.push_back(start(works[next], next));
      ++next;
    }
    std::vector<pollfd> pipes;
    pipes.reserve(children.size());
    for (const Child& child : children) pipes.push_back({child.pipe, POLLIN, 0});
    if (poll(pipes.data(), pipes.size(), -1) < 0) continue;
    for (std::size_t i = children.size(); i > 0;) {
      --i;
      if (pipes[i].revents == 0 || readSome(children[i])) continue;
      const Child done = std::move(children[i]);
      children.erase(children.begin() + static_cast<std::ptrdiff_t>(i));
      results[done.work] = finish(done);
      if (onDone) onDone(results[done.work]);
    }
  }
  return results;
}

Json inChild(const ChildWork& work) { return std::move(inChildren({work}).front()); }

}  // namespace camhook
