#pragma once

/// \file
/// \brief What the tests of buffers do alike: move them through archives, look at what they raise.

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "OwnedBlockTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELSerialization/BaseObjectWithSkeleton.h>
#include <ORVELSerialization/ORVELSerializationException.h>
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

/// \brief Check all that comes of a failure: its text, the raising function, file and statement, one record
/// in the log.
/// \param function its signature as g++ spells it; other compilers spell the types in another way
/// \param statement what stands in the raising line
template <class Operation>
void expectRaised(const std::string& message, const std::string& function, const std::string& file,
                  const std::string& statement, Operation operation)
{
  const LogCapture log(getORVELBaseDataLogger());
  const auto failure = failureOf<ORVELBaseDataException>(operation);
  EXPECT_EQ(failure.getMessage(), message);
#if !defined(__clang__)
  EXPECT_EQ(failure.getFunction(), function);
#else
  const std::size_t end = function.find('(') + 1;
  const std::size_t start = function.rfind(' ', end) + 1;
  EXPECT_NE(failure.getFunction().find(function.substr(start, end - start)), std::string::npos);
#endif
  EXPECT_EQ(failure.getFile(), file);
  EXPECT_NE(sourceLine(failure.getFile(), failure.getLine()).find(statement), std::string::npos);
  ASSERT_EQ(log.getRecords().size(), 1U);
  EXPECT_EQ(log.getRecords()[0].message, message);
  EXPECT_EQ(log.getRecords()[0].level, 40000);
  EXPECT_EQ(log.getRecords()[0].line, static_cast<int>(failure.getLine()));
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

/// \brief Check that an operation refuses elements of no type.
template <class Operation>
void expectTypeOfNoneRefused(Operation operation)
{
  expectRaised("Invalid buffer type eDT_None",
               "void orvel::BaseBuffer::initBase(orvel::ipUInt64, const orvel::eDataType&)",
               "ORVELBaseData/Buffer/BaseBuffer.cpp", "eInvalidBufferType", operation);
}

} // namespace orvel::test
