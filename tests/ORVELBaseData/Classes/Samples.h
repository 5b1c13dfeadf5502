#pragma once

/// \file
/// \brief Samples of every class, for the checks that all classes share.
///
/// A source of samples registers them by class:
/// \code
/// const ClassSamples g_elementsRange("orvel::ElementsRange", makeElementsRangeSamples);
/// \endcode
/// The test program with ORVEL_WRITE_REFERENCE_FILES=1 makes the reference files in tests/data.

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <boost/make_shared.hpp>

#include <ORVELSerialization/BaseOArchive.h>
#include <ORVELSerialization/BaseSerializationObject.h>
#include <ORVELSerialization/ItemOperators.h>
#include <ORVELUtil/ScalarTypes.h>

namespace orvel::test
{

/// \brief An object and what only its class can do with it.
struct Sample
{
  SerializationObjectPtr object;
  std::function<SerializationObjectPtr()> makeAgain; ///< an object of the same value, made without a copy
  std::function<bool(const BaseSerializationObject&)> equals;   ///< whether another object has the same value
  std::function<SerializationObjectPtr()> copyConstruct;        ///< a copy by the class's own constructor
  std::function<void(BaseSerializationObject&)> assignTo;       ///< by the class's own assignment
  std::vector<std::function<SerializationObjectPtr()>> makeNew; ///< by the class's own functions
  std::string typeName;                                         ///< what the class calls itself
  ipUInt32 version = 0;                                         ///< of the class, 0 if it has none

  /// The message with which the class refuses to copy the object to that target; empty if it does not.
  std::function<std::string(const BaseSerializationObject& target)> copyFailure =
      [](const BaseSerializationObject&)
  {
    return "";
  };
  bool isNew = false;             ///< whether new objects have this value
  bool isChangedByItself = false; ///< whether a copy of the object onto itself changes it
  bool isCopiedInPart = false;    ///< whether a copy stores less than the object
  bool isStored = true;           ///< whether archives hold the value; else they hold nothing at all
  std::string writeFailure = {};  ///< the message with which the class refuses to be written, if it does
};

/// \brief What an archive of an older version holds and what it has to become.
struct OldSample
{
  ipUInt32 version;
  std::function<void(BaseOArchive&)> write; ///< writes the old layout
  Sample expected;
};

/// \brief The samples of a class, registered as long as the program runs.
class ClassSamples
{
public:
  using Make = std::function<std::vector<Sample>()>;
  using MakeOld = std::function<std::vector<OldSample>()>;

  /// \param make returns them, the one of the reference files first
  /// \param makeOld returns a sample for every version of the class but the newest
  ClassSamples(
      const std::string& className, Make make, MakeOld makeOld = [] { return std::vector<OldSample>(); });

  ClassSamples(const ClassSamples&) = delete;
  ClassSamples& operator=(const ClassSamples&) = delete;
};

/// \brief Return the samples of a class, none if it is unknown here.
std::vector<Sample> samplesOf(const std::string& className);

/// \brief Return a sample for every version of a class but the newest.
std::vector<OldSample> oldSamplesOf(const std::string& className);

/// \brief Return that sample as one that new objects equal.
Sample asNew(Sample sample);

template <class T, class = void>
inline constexpr bool g_hasVersion = false;
template <class T>
inline constexpr bool g_hasVersion<T, std::void_t<decltype(T::getVersion())>> = true;

/// \brief Return the version of a class by its own function, 0 if it has none.
template <class T>
ipUInt32 getVersionOf()
{
  if constexpr (g_hasVersion<T>)
    return T::getVersion();
  return 0;
}

/// \brief Return a sample of a class.
/// \param make returns a new object of the value, each time
/// \param equals compares two objects of the class
template <class T, class Make, class Equals>
Sample makeSampleBy(Make make, Equals equals)
{
  const boost::shared_ptr<T> object = make();
  Sample sample;
  sample.object = object;
  sample.makeAgain = make;
  sample.equals = [=](const BaseSerializationObject& other)
  {
    const T* const typed = dynamic_cast<const T*>(&other);
    return typed != nullptr && equals(*object, *typed);
  };
  sample.copyConstruct = [=]
  {
    return boost::make_shared<T>(*object);
  };
  sample.assignTo = [=](BaseSerializationObject& target)
  {
    dynamic_cast<T&>(target) = *object;
  };
  sample.makeNew = {[] { return SerializationObjectPtr(T::createNewObject()); },
                    []
                    {
                      return SerializationObjectPtr(T::createSharedObject());
                    }};
  sample.typeName = T::getTypeName();
  sample.version = getVersionOf<T>();
  return sample;
}

/// \brief Return a sample of a class with a copy constructor. \see makeSampleBy
template <class T, class Equals>
Sample makeSample(const T& value, Equals equals)
{
  return makeSampleBy<T>([=] { return boost::make_shared<T>(value); }, equals);
}

/// \brief Return a sample of a class with a comparison of its own. \see makeSampleBy
template <class T>
Sample makeSample(const T& value)
{
  return makeSample(value, [](const T& left, const T& right) { return left == right; });
}

/// \brief Write the version record of a class.
inline void writeVersion(BaseOArchive& archive, const std::string& className, ipUInt32 version)
{
  const ArchiveSectionManager section(archive, className);
  archive << SerializationOItem("version", version);
}

/// \brief Write an item of an old layout.
template <class T>
void writeItem(BaseOArchive& archive, const char* key, const T& value)
{
  archive << SerializationOItem<T>(key, value);
}

} // namespace orvel::test
