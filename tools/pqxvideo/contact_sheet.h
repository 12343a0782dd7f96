#pragma once

#include <vector>

#include "codec.h"
#include "picture/image.h"

namespace pqxvideo {

/// A row for each decoded picture: the original, the decoded, and eight times their difference. All must have the
/// size of the original.
Image contact_sheet(const Image& original, const std::vector<Image>& decoded);

}  // namespace pqxvideo
