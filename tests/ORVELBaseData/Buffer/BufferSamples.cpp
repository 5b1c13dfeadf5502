// Samples of buffers, for the checks that all classes share.

#include <cstring>

#include <boost/make_shared.hpp>

#include "../Classes/Samples.h"
#include <ORVELBaseData/Buffer/BufferUtils.h>
#include <ORVELBaseData/Buffer/ExternalBuffer.h>
#include <ORVELBaseData/Buffer/FragHybridBuffer.h>
#include <ORVELBaseData/Buffer/HybridBuffer.h>
#include <ORVELBaseData/Buffer/TOwnBuffer.h>
#include <ORVELBaseData/Buffer/TypedOwnBuffer.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

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
          asNew(makeBufferSample<Buffer>(leaveUninitialized)),
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
          asNew(makeBufferSample<Buffer>(leaveUninitialized)), filled(eDataType::eDT_Real64, 0)};
}

/// A view takes what it is given, but only from a buffer that looks at something; nothing of it is stored.
std::vector<Sample> makeExternalBufferSamples()
{
  using Buffer = ExternalBuffer;
  static ipInt16 g_memory[] = {1, -2, 300};
  std::vector<Sample> samples = {makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(3, g_memory); }),
                                 makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(2, g_memory); }),
                                 asNew(makeBufferSample<Buffer>(leaveUninitialized))};
  samples.back().copyFailure = [](const BaseSerializationObject&)
  {
    return g_notInitialized;
  };
  for (Sample& sample : samples)
    sample.isStored = false;
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
                                 asNew(makeBufferSample<Buffer>(leaveUninitialized))};
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
            buffer.rollUpFragments(); // stored as 200 300 400 500 0 100
          }),
      makeBufferSample<Buffer>(
          [](Buffer& buffer) {
            buffer.init(eDataType::eDT_UInt8, {g_memory + 4, g_memory}, 2);
          }),
      makeBufferSample<Buffer>([](Buffer& buffer) { buffer.init(eDataType::eDT_UInt8, {}, 4); }),
      asNew(makeBufferSample<Buffer>(leaveUninitialized))};
  samples.front().isChangedByItself = true; // the fragments go back into the order of the block
  return samples;
}

const ClassSamples g_ownBuffers[] = {
    {"orvel::TOwnBuffer<orvel::ipBool>", makeOwnBufferSamples<ipBool>},
    {"orvel::TOwnBuffer<orvel::ipInt8>", makeOwnBufferSamples<ipInt8>},
    {"orvel::TOwnBuffer<orvel::ipUInt8>", makeOwnBufferSamples<ipUInt8>},
    {"orvel::TOwnBuffer<orvel::ipInt16>", makeOwnBufferSamples<ipInt16>},
    {"orvel::TOwnBuffer<orvel::ipUInt16>", makeOwnBufferSamples<ipUInt16>},
    {"orvel::TOwnBuffer<orvel::ipInt32>", makeOwnBufferSamples<ipInt32>},
    {"orvel::TOwnBuffer<orvel::ipUInt32>", makeOwnBufferSamples<ipUInt32>},
    {"orvel::TOwnBuffer<orvel::ipInt64>", makeOwnBufferSamples<ipInt64>},
    {"orvel::TOwnBuffer<orvel::ipUInt64>", makeOwnBufferSamples<ipUInt64>},
    {"orvel::TOwnBuffer<orvel::ipReal32>", makeOwnBufferSamples<ipReal32>},
    {"orvel::TOwnBuffer<orvel::ipReal64>", makeOwnBufferSamples<ipReal64>},
};
const ClassSamples g_typedOwnBuffer("orvel::TypedOwnBuffer", makeTypedOwnBufferSamples);
const ClassSamples g_externalBuffer("orvel::ExternalBuffer", makeExternalBufferSamples);
const ClassSamples g_hybridBuffer("orvel::HybridBuffer", makeHybridBufferSamples);
const ClassSamples g_fragHybridBuffer("orvel::FragHybridBuffer", makeFragHybridBufferSamples);

} // namespace
