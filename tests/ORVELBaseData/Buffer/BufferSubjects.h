#pragma once

/// \file
/// \brief The buffers that own their memory, made alike, so that one test covers all of them.

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "OwnedBlockTesting.h"
#include <ORVELBaseData/Buffer/BaseOwnBuffer.h>
#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/FragHybridBuffer.h>
#include <ORVELBaseData/Buffer/HybridBuffer.h>
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <support/HandWrittenArchive.h>

namespace orvel::test
{

/// \brief Return the block that a buffer owns, null if it owns none.
const char* blockOf(const BaseOwnBuffer& buffer);
const char* blockOf(const HybridBuffer& buffer);
const char* blockOf(const FragHybridBuffer& buffer);

/// \brief Return the list of a buffer in any state.
const BufferPtrColl& listOf(const BaseFragBuffer& buffer);

/// \brief What the buffers in one block do alike. A subject says how its buffer is made and what archives hold
/// of it.
struct BlockSubject
{
  static constexpr int nbAllocations = 1; // of an owner that is initialised
  static constexpr int nbListsKept = 0;   // of a cleared buffer
  static constexpr bool hasFragments = false;

  static std::vector<void*> fragmentsOf(BaseBlockBuffer& buffer) { return {buffer.getDataPtr()}; }

  template <class HandWritten>
  static void putEnd(HandWritten& /*archive*/, ipUInt32 /*version*/)
  {
  }

  template <class HandWritten>
  static void putStructure(HandWritten& archive, std::int64_t size, std::int64_t type,
                           const std::string& typeName)
  {
    archive.integer("size", size);
    archive.enumeration("dataType", type, typeName);
  }

  template <class HandWritten>
  static void putBlocks(HandWritten& archive, const std::string& bytes, std::size_t /*elementSize*/)
  {
    archive.block(bytes);
  }
};

/// What a buffer does that derives from BaseOwnBuffer.
struct OwnSubject : BlockSubject
{
  using Buffer = TypedOwnBuffer;
  static constexpr bool hasViews = false;
  static constexpr const char* className = "orvel::BaseOwnBuffer";
  static constexpr const char* source = "ORVELBaseData/Buffer/BaseOwnBuffer.cpp";
  static constexpr const char* initFunction =
      "void orvel::BaseOwnBuffer::initBase(orvel::ipUInt64, const orvel::eDataType&)";

  static void own(Buffer& buffer, ipUInt64 size, const eDataType& dataType) { buffer.init(size, dataType); }

  /// The version of the derived class comes last.
  template <class HandWritten>
  static void putEnd(HandWritten& archive, ipUInt32 version)
  {
    putVersion(archive, "orvel::TypedOwnBuffer", version);
  }
};

struct HybridSubject : BlockSubject
{
  using Buffer = HybridBuffer;
  static constexpr bool hasViews = true;
  static constexpr const char* className = "orvel::HybridBuffer";
  static constexpr const char* source = "ORVELBaseData/Buffer/HybridBuffer.cpp";
  static constexpr const char* initFunction =
      "void orvel::HybridBuffer::init(orvel::ipUInt64, const orvel::eDataType&)";

  static void own(Buffer& buffer, ipUInt64 size, const eDataType& dataType) { buffer.init(size, dataType); }
  static void view(Buffer& buffer, ipUInt64 size, const eDataType& dataType, void* memory)
  {
    buffer.init(size, dataType, memory);
  }
};

/// Each fragment is one element.
struct FragSubject
{
  using Buffer = FragHybridBuffer;
  static constexpr int nbAllocations = 3; // the block, the list made and the list kept
  static constexpr int nbListsKept = 1;
  static constexpr bool hasFragments = true;
  static constexpr bool hasViews = true;
  static constexpr const char* className = "orvel::FragHybridBuffer";
  static constexpr const char* source = "ORVELBaseData/Buffer/FragHybridBuffer.cpp";
  static constexpr const char* initFunction =
      "void orvel::FragHybridBuffer::init(const orvel::eDataType&, orvel::ipUInt64, orvel::ipUInt64)";

  static void own(Buffer& buffer, ipUInt64 size, const eDataType& dataType)
  {
    buffer.init(dataType, size, 1);
  }
  static void view(Buffer& buffer, ipUInt64 size, const eDataType& dataType, void* memory)
  {
    BufferPtrColl fragments;
    for (ipUInt64 i = 0; i < size; ++i)
      fragments.push_back(static_cast<char*>(memory) + i * getBufferBaseSize(dataType));
    buffer.init(dataType, fragments, 1);
  }

  static std::vector<void*> fragmentsOf(Buffer& buffer) { return buffer.getBufferPtrColl(); }

  template <class HandWritten>
  static void putEnd(HandWritten& /*archive*/, ipUInt32 /*version*/)
  {
  }

  template <class HandWritten>
  static void putStructure(HandWritten& archive, std::int64_t size, std::int64_t type,
                           const std::string& typeName)
  {
    archive.enumeration("dataType", type, typeName);
    archive.integer("nbFragments", size);
    archive.integer("fragmentsSize", 1);
  }

  template <class HandWritten>
  static void putBlocks(HandWritten& archive, const std::string& bytes, std::size_t elementSize)
  {
    for (std::size_t i = 0; i < bytes.size(); i += elementSize)
      archive.block(bytes.substr(i, elementSize));
  }
};

/// \brief Call copy(fragment, offset, size) for each fragment of a buffer.
template <class Subject, class Copy>
void forEachFragment(const typename Subject::Buffer& buffer, Copy copy)
{
  const std::vector<void*> fragments = Subject::fragmentsOf(const_cast<typename Subject::Buffer&>(buffer));
  const ipUInt64 size = fragments.empty() ? 0 : buffer.getMemorySize() / fragments.size();
  for (std::size_t i = 0; i < fragments.size(); ++i)
    if (size != 0)
      copy(static_cast<char*>(fragments[i]), i * size, size);
}

/// \brief Return the bytes of a buffer's elements.
template <class Subject>
std::string bytesIn(const typename Subject::Buffer& buffer)
{
  std::string bytes(buffer.getMemorySize(), '?');
  forEachFragment<Subject>(buffer, [&](const char* fragment, std::size_t offset, std::size_t size)
                           { std::memcpy(&bytes[offset], fragment, size); });
  return bytes;
}

/// \brief Set the bytes of a buffer's elements, all of them.
template <class Subject>
void setBytes(typename Subject::Buffer& buffer, const std::string& bytes)
{
  ASSERT_EQ(bytes.size(), buffer.getMemorySize());
  forEachFragment<Subject>(buffer, [&](char* fragment, std::size_t offset, std::size_t size)
                           { std::memcpy(fragment, &bytes[offset], size); });
}

/// \brief Make a buffer the owner of three elements with six bytes.
template <class Subject>
void ownSixBytes(typename Subject::Buffer& buffer, const std::string& bytes = "abcdef")
{
  Subject::own(buffer, 3, eDataType::eDT_UInt16);
  setBytes<Subject>(buffer, bytes);
}

/// \brief Check that a buffer has three elements with six bytes.
template <class Subject>
void expectSixBytes(const typename Subject::Buffer& buffer, const std::string& bytes = "abcdef")
{
  ASSERT_TRUE(buffer.isInitialized());
  EXPECT_EQ(buffer.getSize(), 3U);
  EXPECT_EQ(buffer.getDataType(), eDataType::eDT_UInt16);
  EXPECT_EQ(bytesIn<Subject>(buffer), bytes);
}

/// \brief Check that a buffer is initialised and its elements follow each other in a block of its own.
template <class Subject>
void expectOwner(const typename Subject::Buffer& buffer)
{
  ASSERT_TRUE(buffer.isInitialized());
  EXPECT_NE(blockOf(buffer), nullptr);
  forEachFragment<Subject>(buffer, [&](const char* fragment, std::size_t offset, std::size_t /*size*/)
                           { EXPECT_EQ(fragment, blockOf(buffer) + offset); });
  if constexpr (!Subject::hasFragments)
  {
    EXPECT_EQ(buffer.getDataPtr(), blockOf(buffer)); // without elements, too
  }
  if constexpr (Subject::hasViews)
  {
    EXPECT_TRUE(buffer.isBufferOwn());
  }
}

/// \brief Check that a buffer is not initialised and owns nothing.
template <class Subject>
void expectCleared(const typename Subject::Buffer& buffer)
{
  EXPECT_FALSE(buffer.isInitialized());
  EXPECT_EQ(blockOf(buffer), nullptr);
  if constexpr (Subject::hasFragments)
  {
    EXPECT_FALSE(buffer.isBufferOwn());
    EXPECT_TRUE(listOf(buffer).empty());
  }
}

/// \brief What six bytes of external memory hold before something is read into them.
inline const char* const g_external = "uvwxyz";

/// \brief Call check(buffer) with an owner of six bytes "ABCDEF" and, if there is such a thing, with a view on
/// six bytes of external memory; check that these are untouched afterwards.
template <class Subject, class Check>
void forOwnerAndView(Check check)
{
  {
    SCOPED_TRACE("an owner");
    typename Subject::Buffer buffer;
    ownSixBytes<Subject>(buffer, "ABCDEF");
    check(buffer);
  }
  if constexpr (Subject::hasViews)
  {
    SCOPED_TRACE("a view");
    char memory[7] = "uvwxyz";
    typename Subject::Buffer buffer;
    Subject::view(buffer, 3, eDataType::eDT_UInt16, memory);
    check(buffer);
    EXPECT_STREQ(memory, g_external);
  }
}

} // namespace orvel::test
