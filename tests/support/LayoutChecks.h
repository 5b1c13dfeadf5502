#pragma once

/// \file
/// \brief Looks at the order of virtual operations and of data members, as the Itanium C++ ABI lays them out.

#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <stdexcept>
#include <type_traits>

namespace orvel::test
{

/// \brief Tell whether an operation of a class is virtual.
template <class Operation>
bool isVirtual(Operation operation)
{
  static_assert(std::is_member_function_pointer<Operation>::value, "give it &Class::operation");
  // The first word of such a pointer is the function's address or, odd, 1 + the offset in the table.
  std::size_t words[2];
  static_assert(sizeof operation == sizeof words, "the Itanium ABI has two words here");
  std::memcpy(words, &operation, sizeof words);
  return words[0] % 2 == 1;
}

/// \brief Return the index of a virtual operation in its class's table; the two entries of a virtual
/// destructor count.
/// \throw std::invalid_argument if the operation is not virtual
template <class Operation>
std::size_t vtableIndexOf(Operation operation)
{
  if (!isVirtual(operation))
    throw std::invalid_argument("not virtual");
  std::size_t offset = 0;
  std::memcpy(&offset, &operation, sizeof offset);
  return (offset - 1) / sizeof(void*);
}

/// \brief Return how many entries a table of virtual operations has.
/// \param address within the table
/// \throw std::runtime_error if the table is not exported
inline std::size_t vtableSizeAt(const void* address)
{
  Dl_info info = {};
  void* symbol = nullptr;
  if (dladdr1(address, &info, &symbol, RTLD_DL_SYMENT) == 0 || symbol == nullptr)
    throw std::runtime_error("the table is not exported");
  // The symbol starts with two words, the offset to the top and the type information.
  return static_cast<const ElfW(Sym)*>(symbol)->st_size / sizeof(void*) - 2;
}

/// \brief Return how many entries the table of virtual operations of an object's class has.
///
/// The class must have a single chain of bases, and its table must be an exported symbol.
/// \throw std::runtime_error if the table is not found
template <class Object>
std::size_t vtableSizeOf(const Object& object)
{
  static_assert(std::is_polymorphic<Object>::value, "has no table");
  const void* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
  return vtableSizeAt(table);
}

/// \brief The table of virtual operations of a class without objects.
class AbstractTable
{
public:
  /// \param symbol of the table, which must be exported, such as "_ZTVN5orvel12BaseDataItemE"
  /// \throw std::runtime_error if it is not
  explicit AbstractTable(const char* symbol)
    : _table(static_cast<void* const*>(dlsym(RTLD_DEFAULT, symbol)))
  {
    if (_table == nullptr)
      throw std::runtime_error("the table is not exported");
  }

  std::size_t getSize() const { return vtableSizeAt(_table); }

  /// \param index of an operation, from vtableIndexOf()
  bool isPure(std::size_t index) const
  {
    return _table[2 + index] == dlsym(RTLD_DEFAULT, "__cxa_pure_virtual"); // two words precede the operations
  }

private:
  void* const* _table;
};

/// \brief Return the place of a data member in its class, in bytes.
template <class Class, class Member>
std::ptrdiff_t offsetOf(Member Class::*member)
{
  static_assert(sizeof member == sizeof(std::ptrdiff_t), "the Itanium ABI has one word here");
  std::ptrdiff_t offset = 0;
  std::memcpy(&offset, &member, sizeof offset);
  return offset;
}

} // namespace orvel::test

/// Makes memberOf(Tag()) a pointer to the private member of a class, as an explicit instantiation may name
/// it: \code ORVEL_TEST_EXPOSE(StartOffset, &orvel::ElementsRange::_startOffset)
/// ... offsetOf(memberOf(StartOffset())) ...
/// \endcode
/// All of it belongs to the source alone: another source of the program may give the tag to another member.
#define ORVEL_TEST_EXPOSE(Tag, ...)                                                                          \
  namespace                                                                                                  \
  {                                                                                                          \
  struct Tag                                                                                                 \
  {                                                                                                          \
    friend constexpr auto memberOf(Tag);                                                                     \
  };                                                                                                         \
  template <auto member>                                                                                     \
  struct Tag##Exposed                                                                                        \
  {                                                                                                          \
    friend constexpr auto memberOf(Tag) { return member; }                                                   \
  };                                                                                                         \
  template struct Tag##Exposed<__VA_ARGS__>;                                                                 \
  }
