#pragma once

/// \file
/// \brief Whole kernels as literals, and kernels that the tests compute themselves.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "../OffsetTesting.h"
#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>

namespace orvel::test
{

/// \brief Whether two coefficients are the same to the bit, or both NaN.
inline bool isSame(float one, float other)
{
  return std::memcmp(&one, &other, sizeof one) == 0 || (std::isnan(one) && std::isnan(other));
}

/// \brief Return a coefficient as its bits: the sign of a zero or a NaN shows.
inline std::uint32_t bitsOf(float value)
{
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

/// \brief Return the coefficient that has these bits.
inline float floatOf(std::uint32_t bits)
{
  float value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

inline constexpr std::uint32_t g_defaultNaNBits =
    0x7FC00000; ///< the NaN that arithmetic gives, on every build

/// \brief A tap of the plane. Taps are equal to the bit.
struct TapXY
{
  int x;
  int y;
  float value;
};

/// \brief A tap of space. Taps are equal to the bit.
struct TapXYZ
{
  int x;
  int y;
  int z;
  float value;
};

inline bool operator==(const TapXY& one, const TapXY& other)
{
  return one.x == other.x && one.y == other.y && isSame(one.value, other.value);
}

inline bool operator==(const TapXYZ& one, const TapXYZ& other)
{
  return one.x == other.x && one.y == other.y && one.z == other.z && isSame(one.value, other.value);
}

inline std::ostream& operator<<(std::ostream& stream, const TapXY& tap)
{
  return stream << "{" << tap.x << ", " << tap.y << ", " << tap.value << "}";
}

inline std::ostream& operator<<(std::ostream& stream, const TapXYZ& tap)
{
  return stream << "{" << tap.x << ", " << tap.y << ", " << tap.z << ", " << tap.value << "}";
}

using TapsXY = std::vector<TapXY>;
using TapsXYZ = std::vector<TapXYZ>;

/// \brief Return the taps of a kernel, in its own order.
inline TapsXY tapsOf(const KernelXY& kernel)
{
  TapsXY taps;
  for (const auto& [offset, value] : kernel.getDataColl())
    taps.push_back({offset.getXOffset(), offset.getYOffset(), value});
  return taps;
}

/// \brief Return the taps of a kernel, in its own order.
inline TapsXYZ tapsOf(const KernelXYZ& kernel)
{
  TapsXYZ taps;
  for (const auto& [offset, value] : kernel.getDataColl())
    taps.push_back({offset.getXOffset(), offset.getYOffset(), offset.getZOffset(), value});
  return taps;
}

/// \brief Names and makes what belongs to a kernel of either class; places are given for x, y and z.
template <class Kernel>
struct KernelTraits;

template <>
struct KernelTraits<KernelXY> : OffsetTraits<OffsetXY>
{
  static constexpr const char* name = "KernelXY";
  static constexpr const char* offsetName = "OffsetXY";
};

template <>
struct KernelTraits<KernelXYZ> : OffsetTraits<OffsetXYZ>
{
  static constexpr const char* name = "KernelXYZ";
  static constexpr const char* offsetName = "OffsetXYZ";
};

/// \brief For suites over both kernels, which gtest calls by the classes' names.
using Kernels = ::testing::Types<KernelXY, KernelXYZ>;

struct KernelNames
{
  template <class Kernel>
  static std::string GetName(int)
  {
    return KernelTraits<Kernel>::name;
  }
};

/// \brief Smallest coordinates and sizes of a kernel's box, x first.
using Box = std::pair<std::vector<int>, std::vector<unsigned int>>;

inline Box boxOf(const KernelXY& kernel)
{
  return {{kernel.getMinX(), kernel.getMinY()}, {kernel.getSizeX(), kernel.getSizeY()}};
}

inline Box boxOf(const KernelXYZ& kernel)
{
  return {{kernel.getMinX(), kernel.getMinY(), kernel.getMinZ()},
          {kernel.getSizeX(), kernel.getSizeY(), kernel.getSizeZ()}};
}

/// \brief Make a kernel that appends its name to a text when it is released.
template <class Kernel>
boost::shared_ptr<Kernel> makeNoting(char name, std::string& released)
{
  return boost::shared_ptr<Kernel>(new Kernel,
                                   [name, &released](Kernel* kernel)
                                   {
                                     released += name;
                                     delete kernel;
                                   });
}

/// \brief What a kernel of nbAxes axes should be, kept in the plainest way.
template <std::size_t nbAxes>
class ExpectedKernel
{
public:
  using Place = std::array<int, nbAxes>;

  bool has(const Place& place) const { return _values.count(reversed(place)) != 0; }
  float at(const Place& place) const { return _values.at(reversed(place)); }

  void insert(const Place& place, float value)
  {
    if (has(place))
      throw std::logic_error("two taps at one place");
    _values[reversed(place)] = value;
    _sum += value;
    _absSum += std::fabs(value);
  }

  void replace(const Place& place, float value)
  {
    float& stored = _values.at(reversed(place));
    _sum -= stored;
    _absSum -= std::fabs(stored);
    stored = value;
    _sum += value;
    _absSum += std::fabs(value);
  }

  void remove(const Place& place)
  {
    const auto tap = _values.find(reversed(place));
    _sum -= tap->second;
    _absSum -= std::fabs(tap->second);
    _values.erase(tap);
  }

  /// \brief Return the first thing in which a kernel differs; "" if none.
  template <class Kernel>
  std::string differenceTo(const Kernel& kernel) const
  {
    std::ostringstream difference;
    const auto taps = tapsOf(kernel);
    auto expected = _values.begin();
    for (std::size_t i = 0; i < taps.size() && expected != _values.end(); ++i, ++expected)
      if (placeOf(taps[i]) != reversed(expected->first) || !isSame(taps[i].value, expected->second))
      {
        difference << "tap " << i << " is " << taps[i] << ", not " << expected->second << " at x "
                   << expected->first[nbAxes - 1] << " y " << expected->first[nbAxes - 2];
        return difference.str();
      }
    if (taps.size() != _values.size())
      difference << taps.size() << " taps, not " << _values.size();
    else if (boxOf(kernel) != getBox())
      difference << "box " << boxOf(kernel).first[0] << " + " << boxOf(kernel).second[0];
    else if (!isSame(kernel.getCoefSum(), _sum))
      difference << "sum " << kernel.getCoefSum() << ", not " << _sum;
    else if (!isSame(kernel.getAbsCoefSum(), _absSum))
      difference << "absolute sum " << kernel.getAbsCoefSum() << ", not " << _absSum;
    return difference.str();
  }

private:
  /// Maps compare the first number first; offsets the last coordinate.
  static Place reversed(Place place)
  {
    std::reverse(place.begin(), place.end());
    return place;
  }

  static Place placeOf(const TapXY& tap) { return {tap.x, tap.y}; }
  static Place placeOf(const TapXYZ& tap) { return {tap.x, tap.y, tap.z}; }

  Box getBox() const
  {
    Box box;
    for (std::size_t axis = 0; axis < nbAxes; ++axis)
    {
      bool isFirst = true;
      long long min = 0;
      long long max = -1;
      for (const auto& entry : _values)
      {
        const long long coordinate = entry.first[nbAxes - 1 - axis];
        min = isFirst || coordinate < min ? coordinate : min;
        max = isFirst || coordinate > max ? coordinate : max;
        isFirst = false;
      }
      box.first.push_back(static_cast<int>(min));
      box.second.push_back(static_cast<unsigned int>(max - min + 1));
    }
    return box;
  }

  std::map<Place, float> _values;
  float _sum = 0;
  float _absSum = 0;
};

using ExpectedKernelXY = ExpectedKernel<2>;
using ExpectedKernelXYZ = ExpectedKernel<3>;

} // namespace orvel::test
