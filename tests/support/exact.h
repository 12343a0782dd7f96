#pragma once

#include <string>

#include "contract.h"

namespace test {

/// Compares a contract with what the operation touches: no byte more, none less. What is wrong first, or nothing. Takes
/// the faults of the process meanwhile.
std::string exact(const Contract& contract);

}  // namespace test
