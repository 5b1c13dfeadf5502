#include "Samples.h"

#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/ExternalBuffer.h>
#include <ORVELBaseData/Buffer/FragHybridBuffer.h>
#include <ORVELBaseData/Buffer/HybridBuffer.h>
#include <ORVELBaseData/Buffer/TOwnBuffer.h>
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELBaseData/Pattern/OffsetXY.h>
#include <ORVELBaseData/Pattern/OffsetXYZ.h>
#include <ORVELBaseData/Range/ElementsRange.h>
#include <ORVELSerialization/SerializationItems.h>

#include <boost/make_shared.hpp>

#include <cstring>
#include <limits>
#include <map>
#include <tuple>
#include <utility>

namespace orvel::test
{

namespace
{

/// \param make returns a new object of the value, each time
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
  return sample;
}

template <class T, class Equals>
Sample makeSample(const T& value, Equals equals)
{
  return makeSampleBy<T>([=] { return boost::make_shared<T>(value); }, equals);
}

template <class T>
Sample makeSample(const T& value)
{
  return makeSample(value, [](const T& left, const T& right) { return left == right; });
}

// Kernels have no comparison of their own.

auto valuesOf(const KernelXY& kernel)
{
  return std::make_tuple(kernel.getDataColl(), kernel.getMinX(), kernel.getMinY(), kernel.getSizeX(),
                         kernel.getSizeY(), kernel.getCoefSum(), kernel.getAbsCoefSum());
}

auto valuesOf(const KernelXYZ& kernel)
{
  return std::make_tuple(kernel.getDataColl(), kernel.getMinX(), kernel.getMinY(), kernel.getMinZ(),
                         kernel.getSizeX(), kernel.getSizeY(), kernel.getSizeZ(), kernel.getCoefSum(),
                         kernel.getAbsCoefSum());
}

template <class Kernel>
Sample makeKernelSample(const Kernel& kernel)
{
  return makeSample(kernel, [](const Kernel& left, const Kernel& right)
                    { return valuesOf(left) == valuesOf(right); });
}

KernelXY makeKernelXY()
{
  KernelXY kernel;
  kernel.insert(OffsetXY(0, 0), 0.5F);
  kernel.insert(OffsetXY(-1, 2), -1.25F);
  kernel.insert(OffsetXY(3, 0), 2.0F);
  return kernel;
}

KernelXYZ makeKernelXYZ()
{
  KernelXYZ kernel;
  kernel.insert(OffsetXYZ(0, 0, 0), 0.5F);
  kernel.insert(OffsetXYZ(-1, 2, 1), -1.25F);
  kernel.insert(OffsetXYZ(3, 0, -2), 2.0F);
  return kernel;
}

template <class Kernel>
std::vector<Sample> makeKernelSamples(const Kernel& kernel)
{
  Kernel emptied = kernel; // minimum 2147483647 and size 2 on every axis
  while (emptied.getNbData() != 0)
    emptied.remove(emptied.getDataColl().begin()->first);
  return {makeKernelSample(kernel), makeKernelSample(Kernel()), makeKernelSample(emptied)};
}

// Buffers are compared by what they hold, whoever owns it.

std::string bytesOf(const BaseBlockBuffer& buffer)
{
  return std::string(static_cast<const char*>(buffer.getDataPtr()), buffer.getMemorySize());
}

std::string bytesOf(const BaseFragBuffer& buffer)
{
  const ipUInt64 sizeInBytes = buffer.getFragmentsSize() * buffer.getBufferBaseSize();
  std::string bytes = std::to_string(buffer.getNbFragments()) + " fragments: ";
  for (const void* const fragment : buffer.getBufferPtrColl())
    bytes.append(static_cast<const char*>(fragment), sizeInBytes);
  return bytes;
}

/// \param fill is called with a new buffer that is not initialised
template <class Buffer, class Fill>
Sample makeBufferSample(Fill fill)
{
  return makeSampleBy<Buffer>(
      [=]
      {
        auto buffer = boost::make_shared<Buffer>();
        fill(*buffer);
        return buffer;
      },
      [](const Buffer& left, const Buffer& right)
      {
        if (!left.isInitialized() || !right.isInitialized())
          return left.isInitialized() == right.isInitialized();
        return left.getSize() == right.getSize() && left.getDataType() == right.getDataType() &&
               bytesOf(left) == bytesOf(right);
      });
}

constexpr const char* g_notInitialized = "Buffer should be initialized before used";

void leaveUninitialized(const BaseBuffer&)
{
}

template <class T>
std::vector<Sample> makeOwnBufferSamples()
{
  using Buffer = TOwnBuffer<T>;
  return {makeBufferSample<Buffer>(
              [](Buffer& buffer)
              {
                buffer.init(3);
                auto* const elements = static_cast<T*>(buffer.getDataPtr());
                elements[0] = T(1);
                elements[1] = T(0);
                elements[2] =
                    static_cast<T>(-2); // true for bool, two below the largest number for unsigned types
              }),
          makeBufferSample<Buffer>(leaveUninitialized),
          makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(0); })};
}

std::vector<Sample> makeTypedOwnBufferSamples()
{
  using Buffer = TypedOwnBuffer;
  const auto filled = [](const eDataType& dataType, ipUInt64 size)
  {
    return makeBufferSample<Buffer>(
        [=](Buffer& buffer)
        {
          buffer.init(size, dataType);
          std::memset(buffer.getDataPtr(), 0x41, buffer.getMemorySize());
        });
  };
  return {filled(eDataType::eDT_Int16, 5), filled(eDataType::eDT_Int8, 10),
          makeBufferSample<Buffer>(leaveUninitialized), filled(eDataType::eDT_Real64, 0)};
}

/// A view takes what it is given, but only from a buffer that looks at something; nothing of it is filed.
std::vector<Sample> makeExternalBufferSamples()
{
  using Buffer = ExternalBuffer;
  static ipInt16 g_memory[] = {1, -2, 300};
  std::vector<Sample> samples = {makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(3, g_memory); }),
                                 makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(2, g_memory); }),
                                 makeBufferSample<Buffer>(leaveUninitialized)};
  samples.back().copyFailure = [](const BaseSerializationObject&)
  {
    return g_notInitialized;
  };
  for (Sample& sample : samples)
    sample.isFiled = false;
  return samples;
}

/// The target decides what a copy is, which one that is not initialised cannot.
std::vector<Sample> makeHybridBufferSamples()
{
  using Buffer = HybridBuffer;
  static ipReal32 g_memory[] = {0.5F, -1.25F};
  std::vector<Sample> samples = {makeBufferSample<Buffer>(
                                     [](Buffer& buffer)
                                     {
                                       buffer.init(2, eDataType::eDT_UInt32);
                                       setBufferValues(70000.0, buffer.getDataType(), buffer.getSize(),
                                                       buffer.getDataPtr());
                                     }),
                                 makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(2, g_memory); }),
                                 makeBufferSample<Buffer>(leaveUninitialized)};
  for (Sample& sample : samples)
    if (dynamic_cast<const Buffer&>(*sample.object).isInitialized())
      sample.copyFailure = [](const BaseSerializationObject& target)
      {
        return dynamic_cast<const Buffer&>(target).isInitialized() ? "" : g_notInitialized;
      };
  return samples;
}

std::vector<Sample> makeFragHybridBufferSamples()
{
  using Buffer = FragHybridBuffer;
  static ipUInt8 g_memory[] = {1, 2, 3, 4, 5, 6};
  std::vector<Sample> samples = {
      makeBufferSample<Buffer>(
          [](Buffer& buffer)
          {
            buffer.init(eDataType::eDT_Int16, 3, 2);
            auto* const elements = static_cast<ipInt16*>(buffer.getDataPtr(0));
            for (ipInt16 i = 0; i < 6; ++i)
              elements[i] = static_cast<ipInt16>(100 * i);
            buffer.rollUpFragments(); // filed as 200 300 400 500 0 100
          }),
      makeBufferSample<Buffer>(
          [](Buffer& buffer) {
            buffer.init(eDataType::eDT_UInt8, {g_memory + 4, g_memory}, 2);
          }),
      makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(eDataType::eDT_UInt8, {}, 4); }),
      makeBufferSample<Buffer>(leaveUninitialized)};
  samples.front().isReorderedByItself = true; // the fragments go back into the order of the block
  return samples;
}

const std::map<std::string, std::vector<Sample>>& getSamples()
{
  constexpr ipInt32 lowest = std::numeric_limits<ipInt32>::min();
  constexpr ipInt32 highest = std::numeric_limits<ipInt32>::max();
  constexpr ipUInt64 largest = std::numeric_limits<ipUInt64>::max();
  static const std::map<std::string, std::vector<Sample>> g_samples = {
      {"orvel::ElementsRange",
       {makeSample(ElementsRange(3, 5000000000)), makeSample(ElementsRange()),
        makeSample(ElementsRange(largest, 1))}},
      {"orvel::ExternalBuffer", makeExternalBufferSamples()},
      {"orvel::FragHybridBuffer", makeFragHybridBufferSamples()},
      {"orvel::HybridBuffer", makeHybridBufferSamples()},
      {"orvel::KernelXY", makeKernelSamples(makeKernelXY())},
      {"orvel::KernelXYZ", makeKernelSamples(makeKernelXYZ())},
      {"orvel::OffsetXY", {makeSample(OffsetXY(7, -300)), makeSample(OffsetXY(lowest, highest))}},
      {"orvel::OffsetXYZ",
       {makeSample(OffsetXYZ(7, -300, 70000)), makeSample(OffsetXYZ(lowest, highest, 0))}},
      {"orvel::TOwnBuffer<orvel::ipBool>", makeOwnBufferSamples<ipBool>()},
      {"orvel::TOwnBuffer<orvel::ipInt8>", makeOwnBufferSamples<ipInt8>()},
      {"orvel::TOwnBuffer<orvel::ipUInt8>", makeOwnBufferSamples<ipUInt8>()},
      {"orvel::TOwnBuffer<orvel::ipInt16>", makeOwnBufferSamples<ipInt16>()},
      {"orvel::TOwnBuffer<orvel::ipUInt16>", makeOwnBufferSamples<ipUInt16>()},
      {"orvel::TOwnBuffer<orvel::ipInt32>", makeOwnBufferSamples<ipInt32>()},
      {"orvel::TOwnBuffer<orvel::ipUInt32>", makeOwnBufferSamples<ipUInt32>()},
      {"orvel::TOwnBuffer<orvel::ipInt64>", makeOwnBufferSamples<ipInt64>()},
      {"orvel::TOwnBuffer<orvel::ipUInt64>", makeOwnBufferSamples<ipUInt64>()},
      {"orvel::TOwnBuffer<orvel::ipReal32>", makeOwnBufferSamples<ipReal32>()},
      {"orvel::TOwnBuffer<orvel::ipReal64>", makeOwnBufferSamples<ipReal64>()},
      {"orvel::TypedOwnBuffer", makeTypedOwnBufferSamples()}};
  return g_samples;
}

// Old versions

/// Files items by hand under the name of a class.
class HandFiled : public BaseSerializationObject
{
public:
  HandFiled(std::string className, std::function<void(BaseOArchive&)> writeItems)
    : _className(std::move(className))
    , _writeItems(std::move(writeItems))
  {
  }

  const std::string& getClassName() const override { return _className; }
  BaseDynamicObject* createNew() const override { return nullptr; }
  DynamicObjectPtr createShared() const override { return nullptr; }
  bool hasCopySupport() const override { return false; }
  BaseDynamicObject* duplicate() const override { return nullptr; }
  DynamicObjectPtr duplicateShared() const override { return nullptr; }
  BoolResult write(BaseOArchive& archive) const override
  {
    _writeItems(archive);
    return BoolResult(true);
  }

private:
  std::string _className;
  std::function<void(BaseOArchive&)> _writeItems;
};

void fileVersion(BaseOArchive& archive, const std::string& className, ipUInt32 version)
{
  const ArchiveSectionManager section(archive, className);
  archive << SerializationOItem("version", version);
}

template <class T>
void fileItem(BaseOArchive& archive, const char* key, const T& value)
{
  archive << SerializationOItem<T>(key, value);
}

void fileElementsRange1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::ElementsRange", 1);
  fileItem<ipUInt32>(archive, "_startOffset", 3);
  fileItem<ipUInt32>(archive, "_nbElements", 4000000000U);
}

// Kernels of version 1 had no sum of absolute values.

void fileKernelXY1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::BaseKernel", 1);
  fileVersion(archive, "orvel::KernelXY", 1);
  fileItem(archive, "_dataColl",
           std::map<OffsetXY, ipReal32>{{OffsetXY(0, 0), 1.5F}, {OffsetXY(1, 0), -0.5F}});
  fileItem<ipInt32>(archive, "_minX", 0);
  fileItem<ipInt32>(archive, "_minY", 0);
  fileItem<ipUInt32>(archive, "_sizeX", 2);
  fileItem<ipUInt32>(archive, "_sizeY", 1);
  fileItem<ipReal32>(archive, "_coefSum", 1.0F);
}

void fileKernelXYZ1(BaseOArchive& archive)
{
  fileVersion(archive, "orvel::BaseKernel", 1);
  fileVersion(archive, "orvel::KernelXYZ", 1);
  fileItem(archive, "_dataColl",
           std::map<OffsetXYZ, ipReal32>{{OffsetXYZ(0, 0, 0), 1.5F}, {OffsetXYZ(1, 0, 0), -0.5F}});
  fileItem<ipInt32>(archive, "_minX", 0);
  fileItem<ipInt32>(archive, "_minY", 0);
  fileItem<ipInt32>(archive, "_minZ", 0);
  fileItem<ipUInt32>(archive, "_sizeX", 2);
  fileItem<ipUInt32>(archive, "_sizeY", 1);
  fileItem<ipUInt32>(archive, "_sizeZ", 1);
  fileItem<ipReal32>(archive, "_coefSum", 1.0F);
}

/// What a kernel of version 1 with the coefficients 1.5 and -0.5 becomes: |v| + v each, the sum as it was
/// filed, no sum of absolute values.
template <class Kernel, class Values>
Sample makeKernelOfVersion1(Values values)
{
  Sample sample = makeKernelSample(Kernel());
  sample.equals = [=](const BaseSerializationObject& other)
  {
    const auto* const kernel = dynamic_cast<const Kernel*>(&other);
    return kernel != nullptr && valuesOf(*kernel) == values;
  };
  return sample;
}

} // namespace

std::vector<Sample> samplesOf(const std::string& className)
{
  const auto found = getSamples().find(className);
  return found == getSamples().end() ? std::vector<Sample>() : found->second;
}

std::vector<OldSample> oldSamplesOf(const std::string& className)
{
  const auto filed = [&](std::function<void(BaseOArchive&)> writeItems)
  {
    return boost::make_shared<HandFiled>(className, std::move(writeItems));
  };

  if (className == "orvel::ElementsRange")
    return {{1, filed(fileElementsRange1), makeSample(ElementsRange(3, 4000000000))}};
  if (className == "orvel::KernelXY")
    return {{1, filed(fileKernelXY1),
             makeKernelOfVersion1<KernelXY>(
                 std::make_tuple(std::map<OffsetXY, ipReal32>{{OffsetXY(0, 0), 3.0F}, {OffsetXY(1, 0), 0.0F}},
                                 0, 0, 2U, 1U, 1.0F, 0.0F))}};
  if (className == "orvel::KernelXYZ")
    return {{1, filed(fileKernelXYZ1),
             makeKernelOfVersion1<KernelXYZ>(std::make_tuple(
                 std::map<OffsetXYZ, ipReal32>{{OffsetXYZ(0, 0, 0), 3.0F}, {OffsetXYZ(1, 0, 0), 0.0F}}, 0, 0,
                 0, 2U, 1U, 1U, 1.0F, 0.0F))}};
  return {};
}

} // namespace orvel::test
