// Draws every family of structuring elements and kernels, as text and as an SVG page.
//
// usage: gallery FOLDER
//
// Writes NAME.txt and NAME.svg for each picture into an existing folder. x runs to the right, y down, and the
// planes of a volume lie side by side, z ascending.
//
// In a text picture of a structuring element "#" is an offset and "." is not; the origin is "O" or "o". In
// one of a kernel a number is a tap and "." is not; the origin has brackets.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <ORVELBaseData/ORVELBaseData.h>

namespace
{

using namespace orvel;

/// A place in space; one of the plane has z = 0.
using Place = std::array<ipInt32, 3>;

Place placeOf(const OffsetXY& offset)
{
  return {offset.getXOffset(), offset.getYOffset(), 0};
}

Place placeOf(const OffsetXYZ& offset)
{
  return {offset.getXOffset(), offset.getYOffset(), offset.getZOffset()};
}

/// A shape or a kernel, ready to be drawn.
struct Picture
{
  std::string name;
  std::string title;
  bool isKernel;
  std::map<Place, double> taps; // of value 1 in a structuring element
};

template <class Element>
Picture pictureOf(const std::string& name, const std::string& arguments,
                  const boost::shared_ptr<Element>& element)
{
  Picture picture = {name, "", false, {}};
  for (const auto& offset : element->getDataColl())
    picture.taps[placeOf(offset)] = 1.0;
  picture.title = name + "(" + arguments + "): " + std::to_string(picture.taps.size()) + " offsets";
  return picture;
}

template <class Kernel>
Picture pictureOfKernel(const std::string& name, const std::string& call,
                        const boost::shared_ptr<Kernel>& kernel)
{
  Picture picture = {name, "", true, {}};
  for (const auto& [offset, value] : kernel->getDataColl())
    picture.taps[placeOf(offset)] = value;
  picture.title = call + ": " + std::to_string(picture.taps.size()) + " taps";
  return picture;
}

// The gallery

Real32Vector ramp(std::size_t size)
{
  Real32Vector values(size);
  for (std::size_t i = 0; i < size; ++i)
    values[i] = static_cast<ipReal32>(i + 1);
  return values;
}

std::vector<Picture> makeElements()
{
  return {pictureOf("rectangularSEXY", "2, 1", rectangularSEXY(2, 1)),
          pictureOf("squareSEXY", "1", squareSEXY(1)),
          pictureOf("circularSEXY", "2.5", circularSEXY(2.5)),
          pictureOf("halfLinearSEXY", "0.4, 6.5", halfLinearSEXY(0.4, 6.5)),
          pictureOf("linearSEXY", "0.4, 6.5", linearSEXY(0.4, 6.5)),
          pictureOf("rectangularSEXYZ", "2, 1, 1", rectangularSEXYZ(2, 1, 1)),
          pictureOf("cubicSEXYZ", "1", cubicSEXYZ(1)),
          pictureOf("sphericalSEXYZ", "1.5", sphericalSEXYZ(1.5)),
          pictureOf("halfLinearSEXYZ", "0.8, 0.4, 2.5", halfLinearSEXYZ(0.8, 0.4, 2.5)),
          pictureOf("linearSEXYZ", "0.8, 0.4, 2.5", linearSEXYZ(0.8, 0.4, 2.5))};
}

std::vector<Picture> makeBuiltKernels()
{
  const Real32Vector ones(5, 1.0F);
  const Real32Vector three(3, 1.0F);
  return {
      pictureOfKernel("rectangularKernelXY", "rectangularKernelXY(2, 1, {1 ... 15}, false)",
                      rectangularKernelXY(2, 1, ramp(15), false)),
      pictureOfKernel("squareKernelXY", "squareKernelXY(1, {1 ... 9}, false)",
                      squareKernelXY(1, ramp(9), false)),
      pictureOfKernel("linearKernelXY", "linearKernelXY(0.4, {1 ... 5}, false)",
                      linearKernelXY(0.4F, ramp(5), false)),
      pictureOfKernel("linearInterpolatedKernelXY", "linearInterpolatedKernelXY(0.4, {1, 1, 1, 1, 1}, false)",
                      linearInterpolatedKernelXY(0.4F, ones, false)),
      pictureOfKernel("rectangularKernelXYZ", "rectangularKernelXYZ(1, 0, 1, {1 ... 9}, false)",
                      rectangularKernelXYZ(1, 0, 1, ramp(9), false)),
      pictureOfKernel("cubicKernelXYZ", "cubicKernelXYZ(1, {1 ... 27}, false)",
                      cubicKernelXYZ(1, ramp(27), false)),
      pictureOfKernel("linearKernelXYZ", "linearKernelXYZ(0.8, 0.4, {1, 2, 3}, false)",
                      linearKernelXYZ(0.8F, 0.4F, ramp(3), false)),
      pictureOfKernel("linearInterpolatedKernelXYZ",
                      "linearInterpolatedKernelXYZ(0.8, 0.4, {1, 1, 1}, false)",
                      linearInterpolatedKernelXYZ(0.8F, 0.4F, three, false)),
      pictureOfKernel("rotate2dKernel", "rotate2dKernel(0.4, rectangularKernelXY(2, 1, {1 ... 15}, false))",
                      rotate2dKernel(0.4F, rectangularKernelXY(2, 1, ramp(15), false)))};
}

std::vector<Picture> makeGeneratedKernels()
{
  std::vector<Picture> pictures;
  KernelXYPtr x;
  KernelXYPtr y;
  separableGaussianSmoothing(1.0F, 1.0F, 0.0F, 3, x, y);
  pictures.push_back(
      pictureOfKernel("separableGaussianSmoothing", "separableGaussianSmoothing(1, 1, 0, 3), x kernel", x));
  separableGaussianGradient(1.0F, 1.0F, 0.0F, 3, x, y);
  pictures.push_back(
      pictureOfKernel("separableGaussianGradient", "separableGaussianGradient(1, 1, 0, 3), x kernel", x));
  separableGaussianHessian(1.0F, 1.0F, 0.0F, 3, x, y);
  pictures.push_back(
      pictureOfKernel("separableGaussianHessian", "separableGaussianHessian(1, 1, 0, 3), x kernel", x));
  createOrientedGaussianSmoothingKernel(0.4F, 1.0F, 2.0F, 0.0F, 3, x, y);
  pictures.push_back(pictureOfKernel("createOrientedGaussianSmoothingKernel",
                                     "createOrientedGaussianSmoothingKernel(0.4, 1, 2, 0, 3), x kernel", x));
  createOrientedGaussianGradientKernel(0.4F, 2.0F, 2.0F, 0.0F, 3, x, y);
  pictures.push_back(pictureOfKernel("createOrientedGaussianGradientKernel",
                                     "createOrientedGaussianGradientKernel(0.4, 2, 2, 0, 3), x kernel", x));
  separableSobelSmoothing(eSobelKernelType::eSKT_Sobel5, x, y);
  pictures.push_back(
      pictureOfKernel("separableSobelSmoothing", "separableSobelSmoothing(eSKT_Sobel5), x kernel", x));
  separableSobelGradient(eSobelKernelType::eSKT_Sobel5, x, y);
  pictures.push_back(
      pictureOfKernel("separableSobelGradient", "separableSobelGradient(eSKT_Sobel5), x kernel", x));
  return pictures;
}

/// The places to be drawn: all taps and the origin.
struct Frame
{
  explicit Frame(const Picture& picture)
  {
    for (const auto& [place, value] : picture.taps)
      for (std::size_t axis = 0; axis < 3; ++axis)
      {
        first[axis] = std::min(first[axis], place[axis]);
        last[axis] = std::max(last[axis], place[axis]);
      }
  }

  int getSize(std::size_t axis) const { return last[axis] - first[axis] + 1; }

  Place first = {0, 0, 0};
  Place last = {0, 0, 0};
};

std::string format(const char* pattern, double value)
{
  char text[64];
  static_cast<void>(std::snprintf(text, sizeof text, pattern, value));
  return text;
}

// Text

std::string cellOf(const Picture& picture, const Place& place)
{
  const bool isOrigin = place == Place{0, 0, 0};
  const auto tap = picture.taps.find(place);
  const bool isTap = tap != picture.taps.end();
  if (!picture.isKernel)
    return isTap ? (isOrigin ? "O" : "#") : (isOrigin ? "o" : ".");
  const std::string number = isTap ? format("%.4g", tap->second) : ".";
  return isOrigin ? "[" + number + "]" : number;
}

std::string drawText(const Picture& picture)
{
  const Frame frame(picture);
  std::size_t width = 1;
  for (const auto& [place, value] : picture.taps)
    width = std::max(width, cellOf(picture, place).size());
  if (picture.isKernel) // the brackets of an origin without a tap
    width = std::max(width, cellOf(picture, {0, 0, 0}).size());

  std::string text = picture.title + "\n";
  for (ipInt32 y = frame.first[1]; y <= frame.last[1]; ++y)
  {
    std::string line;
    for (ipInt32 z = frame.first[2]; z <= frame.last[2]; ++z)
    {
      line += z == frame.first[2] ? "" : "   ";
      for (ipInt32 x = frame.first[0]; x <= frame.last[0]; ++x)
      {
        const std::string cell = cellOf(picture, {x, y, z});
        line += (x == frame.first[0] ? "" : " ") + std::string(width - cell.size(), ' ') + cell;
      }
    }
    text += line + "\n";
  }
  return text;
}

// SVG

/// Blue below 0, white at 0, red above.
std::string colourOf(double value, double largest)
{
  const double part = largest == 0 ? 0 : std::clamp(value / largest, -1.0, 1.0);
  const int faded = static_cast<int>(std::lround(255 * (1 - std::abs(part))));
  char text[16];
  static_cast<void>(std::snprintf(text, sizeof text, "#%02x%02x%02x",
                                  static_cast<unsigned>(part < 0 ? faded : 255), static_cast<unsigned>(faded),
                                  static_cast<unsigned>(part < 0 ? 255 : faded)));
  return text;
}

std::string drawSvg(const Picture& picture)
{
  constexpr int cell = 24;
  constexpr int margin = 12;
  constexpr int top = 40;
  const Frame frame(picture);
  const int planeWidth = frame.getSize(0) * cell + margin;
  const int scaleTop = top + frame.getSize(1) * cell + margin;
  const int width = std::max(2 * margin + frame.getSize(2) * planeWidth, 640);
  double largest = 0;
  for (const auto& [place, value] : picture.taps)
    largest = std::max(largest, std::abs(value));

  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(width) +
                    "\" height=\"" + std::to_string(scaleTop + 50) +
                    "\" font-family=\"sans-serif\" font-size=\"12\">\n<text x=\"" + std::to_string(margin) +
                    "\" y=\"20\">" + picture.title + "</text>\n";
  const auto rectangle = [&](int x, int y, int w, int h, const std::string& fill, const std::string& stroke)
  {
    svg += "<rect x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" width=\"" +
           std::to_string(w) + "\" height=\"" + std::to_string(h) + "\" fill=\"" + fill + "\" stroke=\"" +
           stroke + "\"";
  };
  for (ipInt32 z = frame.first[2]; z <= frame.last[2]; ++z)
    for (ipInt32 y = frame.first[1]; y <= frame.last[1]; ++y)
      for (ipInt32 x = frame.first[0]; x <= frame.last[0]; ++x)
      {
        const auto tap = picture.taps.find({x, y, z});
        const int left = margin + (z - frame.first[2]) * planeWidth + (x - frame.first[0]) * cell;
        const int upper = top + (y - frame.first[1]) * cell;
        rectangle(left, upper, cell, cell,
                  tap == picture.taps.end() ? "none" : colourOf(tap->second, largest), "#cccccc");
        svg += "><title>(" + std::to_string(x) + ", " + std::to_string(y) + ", " + std::to_string(z) + ")" +
               (tap == picture.taps.end() ? "" : ": " + format("%.9g", tap->second)) + "</title></rect>\n";
        if (x == 0 && y == 0 && z == 0)
          svg += "<circle cx=\"" + std::to_string(left + cell / 2) + "\" cy=\"" +
                 std::to_string(upper + cell / 2) + "\" r=\"4\" fill=\"none\" stroke=\"black\"/>\n";
      }

  // The scale, from the largest value below 0 to the one above.
  constexpr int nbSteps = 10;
  for (int step = -nbSteps; step <= nbSteps; ++step)
  {
    rectangle(margin + (step + nbSteps) * cell / 2, scaleTop, cell / 2, cell / 2,
              colourOf(step * largest / nbSteps, largest), "none");
    svg += "/>\n";
  }
  const auto label = [&](int step, double value)
  {
    svg += "<text x=\"" + std::to_string(margin + (step + nbSteps) * cell / 2) + "\" y=\"" +
           std::to_string(scaleTop + cell + margin) + "\">" + format("%.4g", value) + "</text>\n";
  };
  label(-nbSteps, -largest);
  label(0, 0);
  label(nbSteps, largest);
  return svg + "</svg>\n";
}

void save(const std::string& path, const std::string& content)
{
  std::ofstream file(path, std::ios::binary);
  file << content;
  file.close();
  if (!file)
    throw std::runtime_error("cannot write " + path);
}

} // namespace

int main(int argc, char** argv)
{
  if (argc != 2)
  {
    std::cerr << "usage: gallery FOLDER\n";
    return 2;
  }
  try
  {
    const std::string folder = argv[1];
    for (const auto& pictures : {makeElements(), makeBuiltKernels(), makeGeneratedKernels()})
      for (const Picture& picture : pictures)
      {
        save(folder + "/" + picture.name + ".txt", drawText(picture));
        save(folder + "/" + picture.name + ".svg", drawSvg(picture));
      }
  }
  catch (const std::exception& exception)
  {
    std::cerr << "gallery: " << exception.what() << "\n";
    return 1;
  }
  return 0;
}
