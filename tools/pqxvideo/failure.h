#pragma once

#include <new>
#include <stdexcept>
#include <string>

namespace pqxvideo {

/// Why something cannot be done, as one line for the user.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Runs an action on a file and puts the file's name in front of the reason if it fails.
template <class Action>
auto naming(const std::string& path, Action action) {
  try {
    return action();
  } catch (const Failure& failure) {
    throw Failure(path + ": " + failure.what());
  } catch (const std::bad_alloc&) {
    throw Failure(path + ": not enough memory");
  }
}

}  // namespace pqxvideo
