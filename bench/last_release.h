/// The library of the last release, loaded apart from the one that is measured though both have the same name and the
/// same symbols. PQX_LAST_RELEASE, in the environment, says where it is; without that there is none.
#pragma once

#include <string>

namespace bench {

/// Where it has an operation; null if it has none of that name.
void* in_last_release(const std::string& operation);

}  // namespace bench
