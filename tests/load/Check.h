#pragma once

/// \file
/// \brief What the programs share that load and unload the libraries.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <malloc.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ORVEL_TEST_SANITIZED 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ORVEL_TEST_SANITIZED 1
#endif

namespace orvel::test
{

/// \brief End the program with a line on the standard error stream unless a condition holds.
inline void require(bool condition, const char* what)
{
  if (condition)
    return;
  const char* const error = dlerror();
  std::fprintf(stderr, "failed: %s%s%s\n", what, error == nullptr ? "" : ": ", error == nullptr ? "" : error);
  std::fflush(nullptr);
  std::_Exit(1);
}

/// \brief Return the bytes that are allocated and not freed.
///
/// 0 in a sanitized build, where the sanitizer keeps memory for each load, also of a library that is not
/// used; there the leak check at the end of the process looks.
inline std::size_t allocatedBytes()
{
#ifdef ORVEL_TEST_SANITIZED
  return 0;
#else
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
#endif
}

/// \brief Tell whether a library is in the process.
inline bool isLoaded(const char* library)
{
  void* const handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
  if (handle == nullptr)
  {
    dlerror(); // read, so that a later failure does not report it
    return false;
  }
  dlclose(handle);
  return true;
}

/// \brief A plug-in, for as long as this lives.
class Plugin
{
public:
  explicit Plugin(const char* file)
    : _handle(dlopen(file, RTLD_NOW | RTLD_LOCAL))
  {
    require(_handle != nullptr, "the plug-in can be loaded");
  }
  ~Plugin() { require(dlclose(_handle) == 0, "the plug-in can be unloaded"); }
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  /// \brief Return a function of the plug-in.
  template <class Signature = int()>
  Signature* getFunction(const char* name) const
  {
    void* const function = dlsym(_handle, name);
    require(function != nullptr, "the plug-in has the function");
    return reinterpret_cast<Signature*>(function);
  }

private:
  void* _handle;
};

/// \brief Call a round a thousand times; the last 900 must not keep a block of memory each.
///
/// The first hundred are there for what is made once in the process. The smallest block takes 32 bytes; the
/// half of that is left to what the allocator holds back.
template <class Round>
void repeatAThousandTimes(Round round)
{
  std::size_t before = 0;
  for (int i = 0; i < 1000; ++i)
  {
    if (i == 100)
      before = allocatedBytes();
    round();
  }
  const std::size_t after = allocatedBytes();
  if (after > before + 900 * 16)
  {
    std::fprintf(stderr, "failed: memory grows by %zu bytes in 900 rounds\n", after - before);
    std::_Exit(1);
  }
}

} // namespace orvel::test
