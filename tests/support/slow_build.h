// Whether a sanitizer makes everything some times slower, so that a test takes
// fewer points or rounds.
#pragma once

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSlowBuild = true;
#elif defined(__has_feature)
constexpr bool kIsSlowBuild = __has_feature(thread_sanitizer) || __has_feature(address_sanitizer);
#else
constexpr bool kIsSlowBuild = false;
#endif
