// Prints kernels from files of either format, and compares files that differ in their extension only.
//
// usage: read_kernels FILE...
//
// The program knows the names of the files and nothing else: each file says what its class and its format
// are.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>

#include <boost/filesystem/path.hpp>

#include <ORVELBaseData/Pattern/Kernel/KernelXY.h>
#include <ORVELBaseData/Pattern/Kernel/KernelXYZ.h>
#include <ORVELSerialization/ObjectFile.h>
#include <ORVELUtil/BaseException.h>

namespace
{

std::string describe(const orvel::OffsetXY& offset)
{
  return "(" + std::to_string(offset.getXOffset()) + ", " + std::to_string(offset.getYOffset()) + ")";
}

std::string describe(const orvel::OffsetXYZ& offset)
{
  return "(" + std::to_string(offset.getXOffset()) + ", " + std::to_string(offset.getYOffset()) + ", " +
         std::to_string(offset.getZOffset()) + ")";
}

/// A coefficient as a bar: to the left of the axis for a negative one, to the right for a positive one.
std::string bar(float coefficient, float largest)
{
  constexpr int width = 24; // characters on each side
  const float share = largest > 0 ? coefficient / largest : 0;
  const auto length = static_cast<std::size_t>(std::lround(std::abs(share) * width));
  const std::string filled(length, '#');
  const std::string blank(width - length, ' ');
  return share < 0 ? blank + filled + "|" : std::string(width, ' ') + "|" + filled;
}

template <class Kernel>
void print(const Kernel& kernel)
{
  float largest = 0;
  for (const auto& tap : kernel.getDataColl())
    largest = std::max(largest, std::abs(tap.second));

  std::cout << std::setprecision(8) << "  " << kernel.getClassName() << ", " << kernel.getNbData()
            << " taps, box " << kernel.getSizeX() << " x " << kernel.getSizeY();
  if constexpr (std::is_same_v<Kernel, orvel::KernelXYZ>)
    std::cout << " x " << kernel.getSizeZ();
  std::cout << ", sum " << kernel.getCoefSum() << ", absolute sum " << kernel.getAbsCoefSum() << '\n';
  for (const auto& [offset, coefficient] : kernel.getDataColl())
    std::cout << "  " << std::setw(14) << describe(offset) << "  " << std::setw(13) << coefficient << "  "
              << bar(coefficient, largest) << '\n';
}

/// Whether two numbers have the same bits.
bool isSame(float left, float right)
{
  return std::memcmp(&left, &right, sizeof(left)) == 0;
}

template <class Kernel>
bool isEqual(const Kernel& left, const Kernel& right)
{
  const auto isSameTap = [](const auto& a, const auto& b)
  {
    return a.first == b.first && isSame(a.second, b.second);
  };
  bool isSameBox = left.getMinX() == right.getMinX() && left.getMinY() == right.getMinY() &&
                   left.getSizeX() == right.getSizeX() && left.getSizeY() == right.getSizeY();
  if constexpr (std::is_same_v<Kernel, orvel::KernelXYZ>)
    isSameBox = isSameBox && left.getMinZ() == right.getMinZ() && left.getSizeZ() == right.getSizeZ();
  return isSameBox && isSame(left.getCoefSum(), right.getCoefSum()) &&
         isSame(left.getAbsCoefSum(), right.getAbsCoefSum()) &&
         std::equal(left.getDataColl().begin(), left.getDataColl().end(), right.getDataColl().begin(),
                    right.getDataColl().end(), isSameTap);
}

/// Calls an operation with an object that is a kernel. \return false if it is no kernel
template <class Operation>
bool withKernel(const orvel::BaseSerializationObject* object, Operation operation)
{
  if (const auto* planar = dynamic_cast<const orvel::KernelXY*>(object))
    operation(*planar);
  else if (const auto* volumetric = dynamic_cast<const orvel::KernelXYZ*>(object))
    operation(*volumetric);
  else
    return false;
  return true;
}

/// Prints the kernel of a file, and compares it with an earlier one of the same name.
bool show(const boost::filesystem::path& file,
          std::map<boost::filesystem::path, orvel::SerializationObjectPtr>& kernels)
{
  // The file may come from anywhere: the classes of its objects are checked.
  const orvel::SerializationObjectPtr object = orvel::loadObject(file, orvel::ArchiveTrust::untrusted);
  boost::filesystem::path name = file;
  name.replace_extension();
  const auto emplaced = kernels.emplace(name, object);
  const orvel::SerializationObjectPtr& earlier = emplaced.first->second;
  const bool isFirst = emplaced.second;

  bool isGood = true;
  const bool isKernel = withKernel(object.get(),
                                   [&](const auto& kernel)
                                   {
                                     if (isFirst)
                                     {
                                       std::cout << file.filename().string() << '\n';
                                       print(kernel);
                                       return;
                                     }
                                     using Kernel = std::decay_t<decltype(kernel)>;
                                     const auto* other = dynamic_cast<const Kernel*>(earlier.get());
                                     isGood = other != nullptr && isEqual(kernel, *other);
                                     std::cout << file.filename().string()
                                               << (isGood ? ": the same kernel, bit for bit\n\n"
                                                          : ": ANOTHER KERNEL than in the other format\n\n");
                                   });
  if (!isKernel)
    std::cerr << "read_kernels: " << file.string() << " holds no kernel\n";
  return isKernel && isGood;
}

} // namespace

int main(int argc, char** argv)
{
  if (argc < 2)
  {
    std::cerr << "usage: read_kernels FILE...\n";
    return 2;
  }
  bool isGood = true;
  try
  {
    std::map<boost::filesystem::path, orvel::SerializationObjectPtr> kernels;
    for (int index = 1; index < argc; ++index)
      isGood = show(argv[index], kernels) && isGood;
  }
  catch (const orvel::BaseException& failure)
  {
    std::cerr << "read_kernels: " << failure.getMessage() << '\n';
    return EXIT_FAILURE;
  }
  catch (const std::exception& failure)
  {
    std::cerr << "read_kernels: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
  return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
