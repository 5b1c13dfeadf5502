#pragma once

/// \file
/// \brief Tells whether the program is watched by the address sanitizer, which comes with the one for
/// undefined behaviour here.

#if defined(__SANITIZE_ADDRESS__)
#define ORVEL_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVEL_TEST_SANITIZED 1
#endif
#endif

namespace orvel::test
{

#if defined(ORVEL_TEST_SANITIZED)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

} // namespace orvel::test
