#pragma once

/// \file
/// \brief A sample of every class, for the checks that all classes share.
///
/// A new class needs an entry in Samples.cpp and, made by the test program with
/// ORVEL_WRITE_REFERENCE_FILES=1, its reference files in tests/data. Nothing else.

#include <functional>
#include <string>
#include <vector>

#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::test
{

/// \brief An object and what only its class can do with it.
struct Sample
{
  SerializationObjectPtr object;
  std::function<SerializationObjectPtr()> makeAgain; ///< an object of the same value, made without a copy
  std::function<bool(const BaseSerializationObject&)> equals; ///< whether another object has the same value
  std::function<SerializationObjectPtr()> copyConstruct;      ///< a copy by the class's own constructor
  std::function<void(BaseSerializationObject&)> assignTo;     ///< by the class's own assignment

  /// The message with which the class refuses to copy the object to that target; empty if it does not.
  std::function<std::string(const BaseSerializationObject& target)> copyFailure =
      [](const BaseSerializationObject&)
  {
    return "";
  };
  bool isChangedByItself = false; ///< whether a copy of the object onto itself changes it
  bool isCopiedInPart = false;    ///< whether a copy files less than the object
  bool isFiled = true;            ///< whether archives hold the value; else they hold nothing at all
  std::string fileFailure = {};   ///< the message with which the class refuses to be filed, if it does
};

/// \brief What an archive of an older version holds and what it has to become.
struct OldSample
{
  ipUInt32 version;
  SerializationObjectPtr filed; ///< writes the old layout under the name of the class
  Sample expected;
};

/// \brief Return the samples of a class, none if it is unknown here. The first one stands in the reference
/// files.
std::vector<Sample> samplesOf(const std::string& className);

/// \brief Return a sample for every version of a class but the newest.
std::vector<OldSample> oldSamplesOf(const std::string& className);

} // namespace orvel::test
