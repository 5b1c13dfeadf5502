// Makes Gaussian kernels and saves each of them twice, as XML and as binary.
//
// usage: write_kernels SIGMA_X SIGMA_Y RATIO FOLDER

#include <charconv>
#include <cstdlib>
#include <iostream>
#include <string>

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.h>
#include <ORVELSerialization/ObjectFile.h>
#include <ORVELUtil/BaseException.h>

namespace
{

/// Standard deviations in pixels, and a share of the distribution: taps end before the one that reaches it.
struct Settings
{
  float sigmaX = 0;
  float sigmaY = 0;
  float ratio = 0;
};

bool parse(const std::string& text, float& value)
{
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end;
}

void save(const orvel::BaseSerializationObject& kernel, const boost::filesystem::path& folder,
          const std::string& name)
{
  orvel::saveObject(folder / (name + ".xml"), kernel);
  orvel::saveObject(folder / (name + ".bin"), kernel);
}

using Generator2d = void (*)(float, float, float, orvel::ipUInt32, orvel::KernelXYPtr&, orvel::KernelXYPtr&);
using Generator3d = void (*)(float, float, float, float, orvel::ipUInt32, orvel::KernelXYZPtr&,
                             orvel::KernelXYZPtr&, orvel::KernelXYZPtr&);

void write2d(Generator2d generate, const std::string& family, const Settings& settings,
             const boost::filesystem::path& folder)
{
  constexpr orvel::ipUInt32 minKernelSize = 1; // taps on each side of the centre, whatever the ratio
  orvel::KernelXYPtr kernelX;
  orvel::KernelXYPtr kernelY;
  generate(settings.sigmaX, settings.sigmaY, settings.ratio, minKernelSize, kernelX, kernelY);
  save(*kernelX, folder, family + "_2d_x");
  save(*kernelY, folder, family + "_2d_y");
}

void write3d(Generator3d generate, const std::string& family, const Settings& settings,
             const boost::filesystem::path& folder)
{
  constexpr orvel::ipUInt32 minKernelSize = 1;
  const float sigmaZ = settings.sigmaX; // slices as far apart as columns
  orvel::KernelXYZPtr kernelX;
  orvel::KernelXYZPtr kernelY;
  orvel::KernelXYZPtr kernelZ;
  generate(settings.sigmaX, settings.sigmaY, sigmaZ, settings.ratio, minKernelSize, kernelX, kernelY,
           kernelZ);
  save(*kernelX, folder, family + "_3d_x");
  save(*kernelY, folder, family + "_3d_y");
  save(*kernelZ, folder, family + "_3d_z");
}

} // namespace

int main(int argc, char** argv)
{
  Settings settings;
  if (argc != 5 || !parse(argv[1], settings.sigmaX) || !parse(argv[2], settings.sigmaY) ||
      !parse(argv[3], settings.ratio))
  {
    std::cerr << "usage: write_kernels SIGMA_X SIGMA_Y RATIO FOLDER (three numbers and a folder)\n";
    return 2;
  }
  try
  {
    const boost::filesystem::path folder = argv[4];
    boost::filesystem::create_directories(folder);
    write2d(&orvel::separableGaussianSmoothing, "smoothing", settings, folder);
    write2d(&orvel::separableGaussianGradient, "gradient", settings, folder);
    write2d(&orvel::separableGaussianHessian, "hessian", settings, folder);
    write3d(&orvel::separableGaussianSmoothing, "smoothing", settings, folder);
    write3d(&orvel::separableGaussianGradient, "gradient", settings, folder);
    write3d(&orvel::separableGaussianHessian, "hessian", settings, folder);
  }
  catch (const orvel::BaseException& failure)
  {
    std::cerr << "write_kernels: " << failure.getMessage() << '\n';
    return EXIT_FAILURE;
  }
  catch (const std::exception& failure)
  {
    std::cerr << "write_kernels: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
