#pragma once

/// \file
/// \brief What the archive operators of every named enumeration have to pass, given its table.

#include <cstdint>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <log4cplus/logger.h>

#include <ORVELSerialization/ItemOperators.h>
#include <ORVELSerialization/ORVELSerializationException.h>
#include <ORVELSerialization/ORVELSerializationLog.h>
#include <support/EnumerationChecks.h>
#include <support/HandWrittenArchive.h>
#include <support/RaisedFailure.h>

namespace orvel::test
{

/// \brief Return an XML archive of one text under the key "K".
inline std::string xmlOf(const std::string& text)
{
  HandWrittenXml archive;
  archive.text("K", text);
  return archive.file();
}

/// \brief Return a binary archive of one number.
inline std::string binaryOf(std::int64_t number)
{
  HandWrittenBinary archive;
  archive.integer("K", number);
  return archive.file();
}

/// \brief Return the archive of one enumeration under the key "K".
template <class HandWritten, class E>
std::string fileOfEnumeration(E value)
{
  return fileOf<HandWritten>([&](BaseOArchive& archive)
                             { EXPECT_EQ(&(archive << SerializationOItem("K", value)), &archive); });
}

/// \brief Return the enumeration that is all of an archive.
template <class HandWritten, class E>
E enumerationOf(const std::string& file)
{
  E value(0xABCDEF0123);
  readFile<HandWritten>(file, [&](BaseIArchive& archive)
                        { EXPECT_EQ(&(archive >> SerializationIItem("K", value)), &archive); });
  return value;
}

/// \brief Return the failure of reading an enumeration; its target keeps its value.
template <class HandWritten, class E>
ORVELSerializationException failureOfReading(const std::string& file)
{
  E value(0xABCDEF0123);
  auto failure = failureOf<ORVELSerializationException>(
      [&] {
        readStart<HandWritten>(file,
                               [&](BaseIArchive& archive) { archive >> SerializationIItem("K", value); });
      });
  EXPECT_EQ(value.getValue(), 0xABCDEF0123U);
  return failure;
}

/// \brief Check that an archive is refused with that text, in the name of the enumeration's own operator.
template <class Table, class HandWritten>
void expectRefusal(const std::string& file, const std::string& message)
{
  using E = typename Table::Enumeration;
  const LogCapture log(getORVELSerializationLogger());
  const auto failure = failureOfReading<HandWritten, E>(file);
  EXPECT_EQ(failure.getMessage(), message);
  EXPECT_EQ(failure.getFunction(), Table::reader);
  EXPECT_EQ(failure.getFile(), Table::source);
  ASSERT_EQ(log.getRecords().size(), 1U);
  const LogRecord& record = log.getRecords()[0];
  EXPECT_EQ(record.level, log4cplus::ERROR_LOG_LEVEL);
  EXPECT_EQ(record.logger, getORVELSerializationLogger().getName());
  EXPECT_EQ(record.message, message);
  EXPECT_EQ(record.file, Table::source);
  EXPECT_EQ(record.line, static_cast<int>(failure.getLine()));
}

/// \brief Return the message and the function of the failure of reading an item.
template <class HandWritten, class T>
std::pair<std::string, std::string> failureOfItem(const std::string& file)
{
  T value{};
  const auto failure = failureOf<ORVELSerializationException>(
      [&] {
        readStart<HandWritten>(file,
                               [&](BaseIArchive& archive) { archive >> SerializationIItem("K", value); });
      });
  return {failure.getMessage(), failure.getFunction()};
}

template <class Table>
class EnumerationItems : public ::testing::Test
{
};

TYPED_TEST_SUITE_P(EnumerationItems);

TYPED_TEST_P(EnumerationItems, AreFiledAsTextsElementByElement)
{
  using E = typename TypeParam::Enumeration;
  for (const auto& row : TypeParam::rows())
  {
    EXPECT_EQ(fileOfEnumeration<HandWrittenXml>(E(row.enumerator)), xmlOf(row.text));
    EXPECT_EQ((enumerationOf<HandWrittenXml, E>(xmlOf(row.text)).getValue()), row.number);
  }
}

TYPED_TEST_P(EnumerationItems, AreFiledAsNumbersElsewhere)
{
  using E = typename TypeParam::Enumeration;
  for (const auto& row : TypeParam::rows())
  {
    const auto number = static_cast<std::int64_t>(row.number);
    EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(E(row.enumerator)), binaryOf(number));
    EXPECT_EQ((enumerationOf<HandWrittenBinary, E>(binaryOf(number)).getValue()), row.number);
  }
}

TYPED_TEST_P(EnumerationItems, RefuseTextsOfNoEnumerator)
{
  const std::string last = TypeParam::rows().back().text;
  std::string otherCase = last;
  otherCase[0] = 'E';
  for (const std::string& text : {otherCase, last + " ", " " + last, last + last,
                                  last.substr(0, last.size() - 1), std::string(), std::string("0")})
    expectRefusal<TypeParam, HandWrittenXml>(xmlOf(text), "Unknown enumeration text " + text);
}

TYPED_TEST_P(EnumerationItems, RefuseNumbersOfNoEnumerator)
{
  const auto nbEnumerators = static_cast<std::int64_t>(TypeParam::rows().size());
  for (const std::int64_t number :
       {std::int64_t{-1}, nbEnumerators, std::int64_t{2147483647}, std::int64_t{-2147483648}})
    expectRefusal<TypeParam, HandWrittenBinary>(binaryOf(number),
                                                "Unknown enumeration value " + std::to_string(number));
}

TYPED_TEST_P(EnumerationItems, PassFailuresOfTheArchiveThrough)
{
  using E = typename TypeParam::Enumeration;
  const std::string noText = HandWrittenXml().file();
  EXPECT_EQ((failureOfItem<HandWrittenXml, E>(noText)), (failureOfItem<HandWrittenXml, std::string>(noText)));

  HandWrittenBinary text;
  text.text("K", TypeParam::rows().front().text);
  for (const std::string& file : {HandWrittenBinary().file(), text.file(), binaryOf(2147483648)})
    EXPECT_EQ((failureOfItem<HandWrittenBinary, E>(file)), (failureOfItem<HandWrittenBinary, ipInt32>(file)));
}

TYPED_TEST_P(EnumerationItems, FileZeroForAValueOutOfRangeWhereNumbersAreFiled)
{
  using E = typename TypeParam::Enumeration;
  const ipUInt64 nbEnumerators = TypeParam::rows().size();
  for (const ipUInt64 value : {nbEnumerators, ipUInt64{0xFFFFFFFF}})
    EXPECT_EQ(fileOfEnumeration<HandWrittenBinary>(E(value)), binaryOf(0));
}

TYPED_TEST_P(EnumerationItems, EndInALogicErrorForAValueOutOfRangeWhereTextsAreFiled)
{
  using E = typename TypeParam::Enumeration;
  std::ostringstream stream;
  XmlOArchive archive(stream);
  const LogCapture log(getORVELSerializationLogger());
  const E outOfRange(ipUInt64{TypeParam::rows().size()});
  failureOf<std::logic_error>([&] { archive << SerializationOItem("K", outOfRange); });
  EXPECT_TRUE(log.getRecords().empty());
  archive.close();
  EXPECT_EQ(stream.str(), HandWrittenXml().file()); // nothing has been filed
}

REGISTER_TYPED_TEST_SUITE_P(EnumerationItems, AreFiledAsTextsElementByElement, AreFiledAsNumbersElsewhere,
                            RefuseTextsOfNoEnumerator, RefuseNumbersOfNoEnumerator,
                            PassFailuresOfTheArchiveThrough, FileZeroForAValueOutOfRangeWhereNumbersAreFiled,
                            EndInALogicErrorForAValueOutOfRangeWhereTextsAreFiled);

} // namespace orvel::test
