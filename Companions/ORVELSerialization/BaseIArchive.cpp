#include "ORVELSerialization/BaseIArchive.h"

#include <algorithm>
#include <limits>

#include <ORVELSerialization/ORVELSerializationLogMessages.h>
#include <ORVELSerialization/Private/ArchiveAccess.h>
#include <ORVELSerialization/Private/ArchiveFailure.h>
#include <ORVELSerialization/Private/Text.h>

namespace orvel
{

namespace
{

/// a * b, or the largest number where that does not fit.
ipUInt64 saturatedProduct(ipUInt64 a, ipUInt64 b)
{
  constexpr ipUInt64 largest = std::numeric_limits<ipUInt64>::max();
  return b != 0 && a > largest / b ? largest : a * b;
}

} // namespace

void BaseIArchive::checkCount(ipUInt64 count)
{
  checkHolds(count, getMinItemSize(), ORVEL_HERE);
}

void BaseIArchive::checkBlock(ipUInt64 count, ipUInt64 elementSizeInBytes)
{
  checkHolds(count, elementSizeInBytes, ORVEL_HERE);
}

void BaseIArchive::checkHolds(ipUInt64 count, ipUInt64 elementSizeInBytes, const SourceLocation& here)
{
  checkOpen(here);
  details::ArchiveAccess::guard(*this, here, eORVELSerializationMessage::eReadFailed,
                                [&]
                                {
                                  if (!holds(saturatedProduct(count, elementSizeInBytes)))
                                    throw details::ArchiveFailure(
                                        eORVELSerializationMessage::eTooManyElements, count);
                                });
}

void BaseIArchive::spendWork(ipUInt64 units)
{
  spendWork(units, ORVEL_HERE);
}

void BaseIArchive::extendWork(ipUInt64 units, const SourceLocation& here)
{
  constexpr ipUInt64 start = 4096;
  const ipUInt64 read = saturatedProduct(getPosition(), getLimits().maxWork);
  const ipUInt64 budget = read > std::numeric_limits<ipUInt64>::max() - start ? read : read + start;
  if (budget > _workGranted)
  {
    // In portions, so that limits that are set meanwhile count, also where all of the archive is read at
    // once.
    const ipUInt64 granted = std::min(budget - _workGranted, std::max(units, start));
    _workLeft += granted;
    _workGranted += granted;
  }
  if (units > _workLeft)
    details::ArchiveAccess::fail(*this, here, eORVELSerializationMessage::eTooMuchWork);
}

void BaseIArchive::raiseInvalidValue(const std::string& text, const std::string& key,
                                     const SourceLocation& here)
{
  details::ArchiveAccess::fail(*this, here, eORVELSerializationMessage::eInvalidValue, details::quoted(text),
                               details::quoted(key));
}

void BaseIArchive::raiseWrongClass(const std::string& foundClassName, const std::string& expectedClassName,
                                   const SourceLocation& here)
{
  details::ArchiveAccess::fail(*this, here, eORVELSerializationMessage::eWrongClass, foundClassName,
                               expectedClassName);
}

} // namespace orvel
