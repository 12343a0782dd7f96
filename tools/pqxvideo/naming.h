#pragma once

#include <new>
#include <string>

#include "codec.h"
#include "core/failure.h"

namespace pqxvideo {

/// One that names the file it is about.
struct NamedFailure : Failure {
  using Failure::Failure;
};

/// A command line that cannot be followed.
struct UsageFailure : NamedFailure {
  using NamedFailure::NamedFailure;
};

/// Runs an action on a file and puts the file's name in front of the reason if it fails and names no file yet.
template <class Action>
auto naming(const std::string& path, Action action) {
  try {
    return action();
  } catch (const NamedFailure&) {
    throw;
  } catch (const Failure& failure) {
    throw NamedFailure(path + ": " + failure.what());
  } catch (const std::bad_alloc&) {
    throw NamedFailure(path + ": not enough memory");
  }
}

}  // namespace pqxvideo
