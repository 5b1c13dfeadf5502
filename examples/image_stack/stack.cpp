// A stack of image plans that two processes build: one knows its structure, the other one has the pixels.
//
// usage: stack describe FILE X Y Z C T [Z C T]   file the structure of a stack of X x Y pixels and Z, C, T
//                                                plans; the plan that is named behind is left out
//        stack acquire FILE FOLDER [Z C T]       file the pixels of every plan, or of one, in FOLDER, and
//        with
//                                                the last plan those of the previews
//        stack fill FILE FOLDER NEW_FILE         file the stack with the pixels that are in FOLDER
//        stack report FILE                       sizes, completeness, memory and means of a stack
//
// The numbers of plans and pixels count from 0.

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/make_shared.hpp>

#include "ImageStack.h"
#include <ORVELSerialization/BinaryArchive.h>
#include <ORVELSerialization/ObjectFile.h>
#include <ORVELUtil/BaseException.h>

namespace
{

using namespace orvel;
using boost::filesystem::path;

using Pixel = ipUInt16;
constexpr ipUInt64 g_previewSize = 4; // pixels

/// Throws unless there is a plan with memory for so many pixels.
void check(const SerializationObjectConstPtr& object, ipUInt64 nbPixels)
{
  const auto* plan = dynamic_cast<const Plan*>(object.get());
  if (plan == nullptr || !plan->getPixels().isInitialized() ||
      plan->getPixels().getDataType() != eDataType::eDT_UInt16 || plan->getPixels().getSize() != nbPixels)
    throw std::runtime_error("a plan is not one of " + std::to_string(nbPixels) + " pixels of 16 bits");
}

/// The file may come from anywhere: that its parts are of the right classes is not all that has to fit.
boost::shared_ptr<ImageStack> load(const path& file)
{
  auto stack = loadObject<ImageStack>(file, ArchiveTrust::untrusted);
  if (!stack)
    throw std::runtime_error(file.string() + " holds no stack");
  for (const auto& entry : stack->getPlans().getBaseColl())
    check(entry.second, stack->getSizeX() * stack->getSizeY());
  for (std::size_t channel = 0; channel < stack->getPreviews().getSize(); ++channel)
    if (const PlanPtr preview = stack->getPreviews().getPreview(channel))
      check(preview, g_previewSize);
  return stack;
}

// Structure

void describe(const path& file, ipUInt64 sizeX, ipUInt64 sizeY, const PlanIndex& sizes,
              const PlanIndex* leftOut)
{
  ImageStack stack(sizeX, sizeY);
  stack.accessCalibration().init3d(0.25F, 0.25F, 1.5F, "um", 10, 20, 0, 1, 0, 0, 0);

  const Plan prototype(sizeX * sizeY, eDataType::eDT_UInt16);
  const ipUInt64 sizeZ = sizes.getZPlanIdx();
  const ipUInt64 sizeC = sizes.getCPlanIdx();
  const ipUInt64 sizeT = sizes.getTPlanIdx();
  if (leftOut == nullptr)
    stack.accessPlans().assign(prototype, sizeZ, sizeC, sizeT);
  else
  {
    for (ipUInt64 t = 0; t < sizeT; ++t)
      for (ipUInt64 c = 0; c < sizeC; ++c)
        for (ipUInt64 z = 0; z < sizeZ; ++z)
          if (PlanIndex(z, c, t) != *leftOut)
            stack.accessPlans().insert(PlanIndex(z, c, t), boost::make_shared<Plan>(prototype));
  }
  for (ipUInt64 c = 0; c < sizeC; ++c) // every second channel is too dark for a preview
    stack.accessPreviews().push_back(
        c % 2 == 0 ? boost::make_shared<Plan>(g_previewSize, eDataType::eDT_UInt16) : PlanPtr());

  stack.setSerializationMode(eSklSrzMode::eSSM_Skeleton);
  saveObject(file, stack);
}

// Pixels

path fileOf(const path& folder, const PlanIndex& index)
{
  return folder / ("plan-z" + std::to_string(index.getZPlanIdx()) + "-c" +
                   std::to_string(index.getCPlanIdx()) + "-t" + std::to_string(index.getTPlanIdx()) + ".bin");
}

path previewsFileOf(const path& folder)
{
  return folder / "previews.bin";
}

/// The camera of this example: a ramp that starts higher with every plan.
void expose(Plan& plan, ipUInt64 start)
{
  TypedOwnBuffer& pixels = plan.setPixels();
  auto* pixel = static_cast<Pixel*>(pixels.getDataPtr());
  for (ipUInt64 i = 0; i < pixels.getSize(); ++i)
    pixel[i] = static_cast<Pixel>(start + i);
}

/// The data pass: pixels in place, without their structure.
void fileData(const path& file, const BaseObjectWithSkeleton& object)
{
  object.setSerializationMode(eSklSrzMode::eSSM_Data);
  BinaryOArchive archive(file);
  archive.writeObject("data", object);
  archive.close();
}

void readData(const path& file, BaseObjectWithSkeleton& object)
{
  object.setSerializationMode(eSklSrzMode::eSSM_Data);
  BinaryIArchive archive(file);
  archive.setUntrusted(true);
  archive.readObject("data", object);
  archive.close();
}

void acquirePlan(ImageStack& stack, const path& folder, const PlanIndex& index)
{
  Plan& plan = stack.accessPlans().getPlan(index);
  expose(plan, 100 * index.getZPlanIdx() + 1000 * index.getCPlanIdx() + 10000 * index.getTPlanIdx());
  fileData(fileOf(folder, index), plan);
}

void acquire(const path& file, const path& folder, const PlanIndex* index)
{
  const auto stack = load(file);
  boost::filesystem::create_directories(folder);
  if (index != nullptr)
  {
    acquirePlan(*stack, folder, *index);
    return;
  }
  for (const auto& entry : stack->getPlans().getBaseColl())
    acquirePlan(*stack, folder, entry.first);

  // The collection files its previews one after the other: channels without one leave no trace.
  const PreviewColl& previews = stack->getPreviews();
  for (std::size_t channel = 0; channel < previews.getSize(); ++channel)
    if (const PlanPtr preview = previews.getPreview(channel))
      expose(*preview, channel);
  fileData(previewsFileOf(folder), previews);
}

void fillStack(const path& file, const path& folder, const path& newFile)
{
  const auto stack = load(file);
  for (const auto& entry : stack->getPlans().getBaseColl())
    if (const path planFile = fileOf(folder, entry.first); exists(planFile))
      readData(planFile, stack->accessPlans().getPlan(entry.first));

  if (const path previewsFile = previewsFileOf(folder); exists(previewsFile))
  {
    // Reading hands no mode on, as writing does: the mode of each preview is set here.
    PreviewColl& previews = stack->accessPreviews();
    for (std::size_t channel = 0; channel < previews.getSize(); ++channel)
      if (const PlanPtr preview = previews.getPreview(channel))
        preview->setSerializationMode(eSklSrzMode::eSSM_Data);
    readData(previewsFile, previews);
  }
  saveObject(newFile, *stack); // its mode is still eSSM_Full, and goes on to all that it holds
}

// Report

double meanOf(const TypedOwnBuffer& pixels)
{
  const auto* pixel = static_cast<const Pixel*>(pixels.getDataPtr());
  double sum = 0;
  for (ipUInt64 i = 0; i < pixels.getSize(); ++i)
    sum += pixel[i];
  return sum / static_cast<double>(pixels.getSize());
}

void report(const path& file)
{
  const auto loaded = load(file);
  const ImageStack& stack = *loaded;
  const PlanColl& plans = stack.getPlans();
  std::cout << "stack of " << stack.getSizeX() << " x " << stack.getSizeY() << " pixels, "
            << plans.getMaxSizeZ() << " x " << plans.getMaxSizeC() << " x " << plans.getMaxSizeT()
            << " plans (z, c, t)\n";

  const GeometricCalibration& calibration = stack.getCalibration();
  std::cout << "calibration: " << calibration.getXScale() << " x " << calibration.getYScale() << " x "
            << calibration.getZScale() << " " << calibration.getUnitStr() << ", origin "
            << calibration.getXOrigin() << ", " << calibration.getYOrigin() << ", "
            << calibration.getZOrigin() << "\n";

  ipUInt64 nbFilled = 0;
  ipUInt64 memorySize = 0;
  std::ostringstream means;
  for (const auto& entry : plans.getBaseColl())
  {
    const PlanIndex& index = entry.first;
    const Plan& plan = plans.getPlan(index);
    memorySize += plan.getPixels().getMemorySize();
    if (!plan.hasPixels())
      continue;
    ++nbFilled;
    means << "mean of plan z=" << index.getZPlanIdx() << ", c=" << index.getCPlanIdx()
          << ", t=" << index.getTPlanIdx() << ": " << meanOf(plan.getPixels()) << "\n";
  }
  std::cout << "plans: " << plans.getNbPlans() << (plans.isComplete() ? ", complete" : ", incomplete") << "\n"
            << "filled: " << nbFilled << " of " << plans.getNbPlans() << "\n"
            << "memory: " << memorySize << " bytes\n";

  const PreviewColl& previews = stack.getPreviews();
  for (std::size_t channel = 0; channel < previews.getSize(); ++channel)
  {
    const PlanPtr preview = previews.getPreview(channel);
    std::cout << "preview of channel " << channel << ": ";
    if (!preview)
      std::cout << "none\n";
    else if (!preview->hasPixels())
      std::cout << "still to come\n";
    else
      std::cout << "mean " << meanOf(preview->getPixels()) << "\n";
  }
  std::cout << means.str();
}

// The words

int usage()
{
  std::cerr << "usage: stack describe FILE X Y Z C T [Z C T]\n"
               "       stack acquire FILE FOLDER [Z C T]\n"
               "       stack fill FILE FOLDER NEW_FILE\n"
               "       stack report FILE\n";
  return 2;
}

ipUInt64 numberOf(const std::string& text)
{
  std::istringstream stream(text);
  ipUInt64 number = 0;
  if (text.find_first_not_of("0123456789") != std::string::npos || !(stream >> number))
    throw std::runtime_error("\"" + text + "\" is no number from 0 to 2^64 - 1");
  return number;
}

PlanIndex indexOf(const std::vector<std::string>& arguments, std::size_t first)
{
  return PlanIndex(numberOf(arguments[first]), numberOf(arguments[first + 1]),
                   numberOf(arguments[first + 2]));
}

int run(const std::vector<std::string>& arguments)
{
  const std::size_t count = arguments.size();
  const std::string word = count == 0 ? "" : arguments[0];
  if (word == "describe" && (count == 7 || count == 10))
  {
    const PlanIndex leftOut = count == 10 ? indexOf(arguments, 7) : PlanIndex(0, 0, 0);
    describe(arguments[1], numberOf(arguments[2]), numberOf(arguments[3]), indexOf(arguments, 4),
             count == 10 ? &leftOut : nullptr);
  }
  else if (word == "acquire" && (count == 3 || count == 6))
  {
    const PlanIndex index = count == 6 ? indexOf(arguments, 3) : PlanIndex(0, 0, 0);
    acquire(arguments[1], arguments[2], count == 6 ? &index : nullptr);
  }
  else if (word == "fill" && count == 4)
    fillStack(arguments[1], arguments[2], arguments[3]);
  else if (word == "report" && count == 2)
    report(arguments[1]);
  else
    return usage();
  return 0;
}

} // namespace

int main(int argc, char** argv)
{
  try
  {
    return run(std::vector<std::string>(argv + 1, argv + argc));
  }
  catch (const orvel::BaseException& exception)
  {
    std::cerr << "stack: " << exception.getMessage() << "\n";
  }
  catch (const std::exception& exception)
  {
    std::cerr << "stack: " << exception.what() << "\n";
  }
  return EXIT_FAILURE;
}
