#pragma once

/// \file
/// \brief What the tests of buffers do alike: move them through archives, look at what they raise.

#include <cstddef>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "OwnedBlockTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELUtil/ORVELUtilException.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

namespace orvel::test
{

/// \brief Return the file that an object makes in a mode.
template <class HandWritten>
std::string fileOfMode(const BaseObjectWithSkeleton& object, const eSklSrzMode& mode)
{
  object.setSerializationMode(mode);
  return fileOf<HandWritten>([&](BaseOArchive& archive) { EXPECT_TRUE(object.write(archive)); });
}

/// \brief Read an object in a mode from a file that holds nothing else.
template <class HandWritten>
void readInMode(BaseObjectWithSkeleton& object, const std::string& file, const eSklSrzMode& mode)
{
  object.setSerializationMode(mode);
  readFile<HandWritten>(file,
                        [&](BaseIArchive& archive)
                        {
                          const BoolResult result = object.read(archive);
                          EXPECT_TRUE(result);
                          EXPECT_EQ(result.getMessage(), "");
                        });
}

/// \brief Return the failure of class Exception that reading an object in a mode raises.
template <class Exception, class HandWritten>
Exception failureOfReading(BaseObjectWithSkeleton& object, const HandWritten& archive,
                           const eSklSrzMode& mode)
{
  object.setSerializationMode(mode);
  return failureOf<Exception>(
      [&] { readStart<HandWritten>(archive.file(), [&](BaseIArchive& input) { object.read(input); }); });
}

/// \brief Check that a file is refused wherever it is cut.
/// \param check called with a new object after each failure; begin makes the object ready
template <class Object, class HandWritten, class Begin, class Check>
void expectRefusedWhereverItIsCut(const std::string& file, Begin begin, Check check)
{
  const std::size_t end = file.find_last_not_of('\n') + 1; // the end of the last line may be missing
  for (std::size_t length = 0; length < end; ++length)
  {
    SCOPED_TRACE(length);
    Object object;
    begin(object);
    EXPECT_THROW(
        readFile<HandWritten>(file.substr(0, length), [&](BaseIArchive& archive) { object.read(archive); }),
        ORVELSerializationException);
    check(object);
  }
}

/// \brief Check that an operation finds no memory: the text with the size asked for, the cause.
template <class Operation>
void expectNoMemory(ipUInt64 sizeInBytes, Operation operation)
{
  const LogCapture log(getORVELBaseDataLogger());
  const auto failure = failureOf<ORVELBaseDataException>(operation);
  EXPECT_EQ(failure.getMessage(),
            "Memory allocation failed with requested size " + std::to_string(sizeInBytes));
  EXPECT_TRUE(isCausedByBadAlloc(failure));
  EXPECT_EQ(log.getRecords().size(), 1U);
}

/// \brief Check that an operation asks a buffer that is not initialised.
template <class Operation>
void expectNotInitialised(Operation operation)
{
  EXPECT_EQ(messageOf<ORVELBaseDataException>(operation), "Buffer should be initialized before used");
}

/// \brief The same with the function and the source that it names.
inline void expectNotInitialised(const std::string& function, const std::string& source,
                                 const std::function<void()>& operation)
{
  expectRaised<ORVELBaseDataException>(
      operation, {"Buffer should be initialized before used", function, source, "", "requireInitialized"});
}

/// \brief Check that a class that does not copy refuses to in its own name.
/// \param className with its namespace
inline void expectCopyRefused(BaseDynamicObject& object, const BaseDynamicObject& other,
                              const std::string& className, const std::string& source)
{
  const std::string message = "Class " + className + " doesn't support copy";
  EXPECT_FALSE(object.hasCopySupport());
  expectRaised<ORVELUtilException>(
      [&] { object.copy(other); },
      {message, "virtual void " + className + "::copy(const orvel::BaseDynamicObject&)", source});
  expectRaised<ORVELUtilException>(
      [&] { object.duplicate(); },
      {message, "virtual orvel::BaseDynamicObject* " + className + "::duplicate() const", source});
  expectRaised<ORVELUtilException>(
      [&] { object.duplicateShared(); },
      {message, "virtual orvel::DynamicObjectPtr " + className + "::duplicateShared() const", source});
}

/// \brief Check that archives hold nothing of an object, in any mode, and that reading one succeeds.
template <class Check>
void expectNothingIsStored(BaseObjectWithSkeleton& object, Check check)
{
  for (const auto& mode : {eSklSrzMode::eSSM_Full, eSklSrzMode::eSSM_Skeleton, eSklSrzMode::eSSM_Data})
  {
    EXPECT_EQ(fileOfMode<HandWrittenXml>(object, mode), HandWrittenXml().file());
    EXPECT_EQ(fileOfMode<HandWrittenBinary>(object, mode), HandWrittenBinary().file());
    readInMode<HandWrittenXml>(object, HandWrittenXml().file(), mode);
    readInMode<HandWrittenBinary>(object, HandWrittenBinary().file(), mode);
    check();
  }
}

/// \brief Check that an operation refuses elements of no type.
template <class Operation>
void expectTypeOfNoneRefused(Operation operation)
{
  expectRaised<ORVELBaseDataException>(
      operation, {"Invalid buffer type eDT_None",
                  "void orvel::BaseBuffer::initBase(orvel::ipUInt64, const orvel::eDataType&)",
                  "ORVELBaseData/Buffer/BaseBuffer.cpp", "", "eInvalidBufferType"});
}

} // namespace orvel::test
