#pragma once
// Exact comparison of 5-6-5 pictures. A failure names the first wrong pixel and leaves the picture that was
// drawn as a PNG in the folder "failed_pictures" of the current folder.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "irender2d.h"
#include "render/picture.h"

namespace seawarden_test
{

/// A copy of a surface's pixels, taken under a lock; no pixels when it can't be locked.
Picture TakePicture(IRender2D& render, int surface);

/// `name` names the PNG of a failure, without its ending.
::testing::AssertionResult SamePicture(const std::string& name, const Picture& actual,
                                       const Picture& expected);

/// Against a PNG, such as the one that an earlier failure left. A reference that is missing fails.
::testing::AssertionResult SameAsReference(const std::string& name, const Picture& actual,
                                           const std::string& referencePath);

} // namespace seawarden_test
