#pragma once

/// \file
/// \brief Mutexes of a source unit.

#include <boost/thread/mutex.hpp>

namespace orvel
{

/// \brief Gives a class of a source unit a mutex of its own, made on the first call of get().
///
/// The unit derives a class from it in its unnamed namespace and calls touch() from a load-time initialiser,
/// so that the mutex exists before a second thread can start.
/// \code
/// class TypeNameMutex : public UnitMutex<TypeNameMutex> {};
/// const bool g_mutexMade = TypeNameMutex::touch();
/// \endcode
template <class Unit>
class UnitMutex
{
public:
  static boost::mutex& get()
  {
    static boost::mutex g_mutex;
    return g_mutex;
  }

  static bool touch() ///< makes the mutex; returns true
  {
    get();
    return true;
  }
};

} // namespace orvel
