#include "ORVELBaseData/Pattern/Kernel/Instances/OrientedGaussianKernel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include "../KernelTesting.h"
#include <ORVELBaseData/ORVELBaseDataException.h>
#include <ORVELBaseData/ORVELBaseDataLog.h>
#include <ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.h>
#include <ORVELBaseData/Pattern/Kernel/KernelLogMessages.h>
#include <ORVELBaseData/Pattern/Kernel/KernelUtils.h>
#include <ORVELUtil/LogMessageManager.h>
#include <support/FailingAllocation.h>
#include <support/RaisedFailure.h>

namespace
{

using namespace orvel;
using namespace orvel::test;

constexpr float g_nan = std::numeric_limits<float>::quiet_NaN();
constexpr float g_infinity = std::numeric_limits<float>::infinity();
constexpr float g_pi = 3.14159265F;
constexpr int g_lowest = -2147483647 - 1;

constexpr const char* g_close = "Standard deviation along X and Y are close, the rotation may not be visible";
constexpr const char* g_tooLow =
    "The specified orientation is too low, the rotation is useless and the kernel won't be rotated";

using MakeOriented = void (*)(ipReal32, ipReal32, ipReal32, ipReal32, ipUInt32, KernelXYPtr&, KernelXYPtr&);
using MakeStraight = void (*)(ipReal32, ipReal32, ipReal32, ipUInt32, KernelXYPtr&, KernelXYPtr&);

struct Family
{
  std::string name;
  MakeOriented make;
  std::string straightName;
  MakeStraight makeStraight;
};

const Family g_smoothing = {"createOrientedGaussianSmoothingKernel", &createOrientedGaussianSmoothingKernel,
                            "separableGaussianSmoothing", &separableGaussianSmoothing};
const Family g_gradient = {"createOrientedGaussianGradientKernel", &createOrientedGaussianGradientKernel,
                           "separableGaussianGradient", &separableGaussianGradient};

struct Kernels
{
  KernelXYPtr x;
  KernelXYPtr y;
};

Kernels make(const Family& family, float orientation, float stdDevX, float stdDevY, float ratio = 0.9F,
             ipUInt32 minKernelSize = 0)
{
  Kernels kernels;
  family.make(orientation, stdDevX, stdDevY, ratio, minKernelSize, kernels.x, kernels.y);
  return kernels;
}

void expectSame(const KernelXY& kernel, const KernelXY& expected, const std::string& what)
{
  EXPECT_EQ(tapsOf(kernel), tapsOf(expected)) << what;
  EXPECT_EQ(boxOf(kernel), boxOf(expected)) << what;
  EXPECT_TRUE(isSame(kernel.getCoefSum(), expected.getCoefSum())) << what;
  EXPECT_TRUE(isSame(kernel.getAbsCoefSum(), expected.getAbsCoefSum())) << what;
}

// --- Kernels -------------------------------------------------------------------------------------------

TEST(OrientedGaussianKernel, TurnsBothSmoothingKernels)
{
  const Kernels kernels = make(g_smoothing, g_pi / 2, 1, 0.3F);
  const float atZero =
      kernels.y->getValue(OffsetXY(0, 0)); // of one tap; its value is that of the straight one
  EXPECT_NEAR(atZero, 1.3298076F, 2e-7F);
  EXPECT_EQ(tapsOf(*kernels.x), (TapsXY{{0, -1, 0.24197072F}, {0, 0, 0.39894229F}, {0, 1, 0.24197072F}}));
  EXPECT_EQ(kernels.y->getNbData(), 1U);
}

TEST(OrientedGaussianKernel, TurnsBothGradientKernels)
{
  const Kernels kernels = make(g_gradient, g_pi / 2, 1, 1);
  const float slope = 0.24197072F / 0.95449972F;
  EXPECT_EQ(tapsOf(*kernels.x),
            (TapsXY{{0, -1, slope}, {0, 0, kernels.x->getValue(OffsetXY(0, 0))}, {0, 1, -slope}}));
  EXPECT_EQ(tapsOf(*kernels.y),
            (TapsXY{{-1, 0, -slope}, {0, 0, kernels.y->getValue(OffsetXY(0, 0))}, {1, 0, slope}}));
  EXPECT_EQ(kernels.x->getValue(OffsetXY(0, 0)), 0); // of either sign
  EXPECT_EQ(kernels.y->getValue(OffsetXY(0, 0)), 0);
}

TEST(OrientedGaussianKernel, MergesTapsOnTheDiagonals)
{
  const Kernels kernels = make(g_smoothing, g_pi / 4, 1, 1, 0, 2);
  // The taps at 1 and 2 meet: a quarter of the sum of the densities 0.24197072 and 0.05399097 is left.
  const float merged = ((0.24197072F + 0.05399097F) * 0.5F) / 2;
  EXPECT_EQ(tapsOf(*kernels.x), (TapsXY{{-1, -1, merged}, {0, 0, 0.39894229F}, {1, 1, merged}}));
  EXPECT_EQ(tapsOf(*kernels.y), (TapsXY{{1, -1, merged}, {0, 0, 0.39894229F}, {-1, 1, merged}}));
}

TEST(OrientedGaussianKernel, LosesTheSignOfAnEarlierNegativeTapOfTheGradient)
{
  const Kernels kernels = make(g_gradient, g_pi / 4, 1, 1, 0, 2);
  // The taps at -2 and -1 are positive; those at 1 and 2 negative, of which the earlier loses its sign.
  const KernelXYPtr straight = [&]
  {
    KernelXYPtr x;
    KernelXYPtr y;
    separableGaussianGradient(1, 1, 0, 2, x, y);
    return x;
  }();
  const float one = straight->getValue(OffsetXY(-1, 0));
  const float two = straight->getValue(OffsetXY(-2, 0));
  EXPECT_EQ(kernels.x->getValue(OffsetXY(-1, -1)), ((two + one) * 0.5F) / 2);
  EXPECT_EQ(kernels.x->getValue(OffsetXY(1, 1)), ((one - two) * 0.5F) / 2);
}

TEST(OrientedGaussianKernel, IsTheStraightKernelTurnedForManyArguments)
{
  std::mt19937 engine(551);
  std::uniform_real_distribution<float> angles(-10, 10);
  std::uniform_real_distribution<float> deviations(0.2F, 6);
  std::uniform_real_distribution<float> ratios(0, 0.999F);
  for (int i = 0; i < 1000; ++i)
    for (const Family* family : {&g_smoothing, &g_gradient})
    {
      const float orientation = angles(engine);
      const float stdDevX = deviations(engine);
      const float stdDevY = deviations(engine);
      const float ratio = ratios(engine);
      const ipUInt32 minKernelSize = 1 + static_cast<ipUInt32>(i % 5);
      Kernels straight;
      family->makeStraight(stdDevX, stdDevY, ratio, minKernelSize, straight.x, straight.y);
      const Kernels kernels = make(*family, orientation, stdDevX, stdDevY, ratio, minKernelSize);
      expectSame(*kernels.x, *rotate2dKernel(orientation, straight.x), family->name);
      expectSame(*kernels.y, *rotate2dKernel(orientation, straight.y), family->name);
      ASSERT_FALSE(HasFailure()) << orientation << " " << stdDevX << " " << stdDevY << " " << ratio;
    }
}

TEST(OrientedGaussianKernel, StaysOnTheAxesAtOrientationZero)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
    for (const float orientation : {0.0F, -0.0F})
    {
      Kernels straight;
      family->makeStraight(1, 2, 0.9F, 0, straight.x, straight.y);
      const Kernels kernels = make(*family, orientation, 1, 2);
      expectSame(*kernels.x, *straight.x, family->name);
      expectSame(*kernels.y, *straight.y, family->name);
    }
}

TEST(OrientedGaussianKernel, TurnsFromTheRootOfTheFloatEpsilonOn)
{
  const float root = 0x1.6a09e6p-12F; // 3.45e-4: 1500 steps away a half of one to the side
  const float above = std::nextafter(root, 1.0F);
  for (const Family* family : {&g_smoothing, &g_gradient})
    for (const float sign : {1.0F, -1.0F})
    {
      EXPECT_TRUE(make(*family, sign * root, 1, 2, 0, 1500).x->exists(OffsetXY(1500, 0))) << family->name;
      const Kernels turned = make(*family, sign * above, 1, 2, 0, 1500);
      EXPECT_TRUE(turned.x->exists(OffsetXY(1500, static_cast<int>(sign)))) << family->name;
      EXPECT_FALSE(turned.x->exists(OffsetXY(1500, 0))) << family->name;
      EXPECT_TRUE(turned.y->exists(OffsetXY(-static_cast<int>(sign), 1500))) << family->name;
    }
}

TEST(OrientedGaussianKernel, TakesAnglesFarOutsideOneTurn)
{
  const Kernels kernels = make(g_smoothing, 40.5F * g_pi, 1, 2);
  EXPECT_EQ(boxOf(*kernels.x), (Box{{0, -1}, {1, 3}}));
}

TEST(OrientedGaussianKernel, IsNotTurnedByNaN)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
    EXPECT_EQ(boxOf(*make(*family, g_nan, 1, 2).x), (Box{{-1, 0}, {3, 1}})) << family->name;
}

TEST(OrientedGaussianKernel, IsOneTapAtTheLowestPlaceForAnInfiniteAngle)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
    EXPECT_EQ(boxOf(*make(*family, -g_infinity, 1, 2).y), (Box{{g_lowest, g_lowest}, {1, 1}}))
        << family->name;
}

TEST(OrientedGaussianKernel, ReleasesWhatThePointersHeld)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
    for (const float orientation : {0.0F, 1.0F})
    {
      const auto oldX = boost::make_shared<KernelXY>();
      const auto oldY = boost::make_shared<KernelXY>();
      KernelXYPtr x = oldX;
      KernelXYPtr y = oldY;
      family->make(orientation, 1, 2, 0.9F, 0, x, y);
      EXPECT_EQ(oldX.use_count(), 1) << family->name;
      EXPECT_EQ(oldY.use_count(), 1) << family->name;
      EXPECT_EQ(oldX->getNbData(), 0U) << family->name;
      EXPECT_EQ(x.use_count(), 1) << family->name;
      EXPECT_EQ(y.use_count(), 1) << family->name;
    }
}

TEST(OrientedGaussianKernel, TurnsAPointerGivenForBothTwice)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    KernelXYPtr kernel;
    family->make(g_pi / 2, 1, 2, 0.9F, 0, kernel, kernel);
    EXPECT_EQ(boxOf(*kernel), (Box{{0, -3}, {1, 7}})) << family->name; // the kernel of y, upside down
    EXPECT_EQ(kernel.use_count(), 1) << family->name;
  }
}

// --- Warnings ------------------------------------------------------------------------------------------

/// The texts that a call logs, each expected at WARN level from a statement of the function's source.
template <class Call>
std::vector<std::string> warningsOf(Call call)
{
  const LogCapture log(getORVELBaseDataLogger());
  call();
  std::vector<std::string> texts;
  for (const LogRecord& record : log.getRecords())
  {
    EXPECT_EQ(record.level, 30000);
    EXPECT_EQ(record.logger, getORVELBaseDataLoggerName());
    EXPECT_EQ(record.file, "ORVELBaseData/Pattern/Kernel/Instances/OrientedGaussianKernel.cpp");
    EXPECT_NE(sourceLine(record.file, static_cast<unsigned int>(record.line)).find("ORVEL_HERE"),
              std::string::npos);
    texts.push_back(record.message);
  }
  return texts;
}

std::vector<std::string> warningsOf(const Family& family, float orientation, float stdDevX, float stdDevY)
{
  return warningsOf([&] { make(family, orientation, stdDevX, stdDevY, 0, 2); });
}

using Texts = std::vector<std::string>;

TEST(OrientedGaussianKernel, WarnsOfEqualDeviationsWhenItSmoothsAndStillTurns)
{
  EXPECT_EQ(warningsOf(g_smoothing, 1, 2, 2), Texts{g_close});
  EXPECT_EQ(boxOf(*make(g_smoothing, g_pi / 2, 1, 1).x), (Box{{0, -1}, {1, 3}}));
  EXPECT_EQ(warningsOf(g_smoothing, 1, 1, 2), Texts{});
}

TEST(OrientedGaussianKernel, WarnsOfDeviationsThatAreNotCloseWhenItDerives)
{
  EXPECT_EQ(warningsOf(g_gradient, 1, 2, 2), Texts{});
  EXPECT_EQ(warningsOf(g_gradient, 1, 1, 2), Texts{g_close});
  EXPECT_EQ(warningsOf(g_gradient, 1, 2, 1), Texts{g_close});
}

TEST(OrientedGaussianKernel, TakesDeviationsForCloseBelowTheRootOfTheDoubleEpsilon)
{
  const float deviation = 0.1F; // where single precision has steps of 2^-27
  const float near = deviation + 0x1p-27F;
  const float atTheRoot = deviation + 0x1p-26F;
  const float far = deviation + 0x1.8p-26F;
  EXPECT_EQ(warningsOf(g_smoothing, 1, deviation, near), Texts{g_close});
  EXPECT_EQ(warningsOf(g_smoothing, 1, near, deviation), Texts{g_close});
  EXPECT_EQ(warningsOf(g_smoothing, 1, deviation, atTheRoot), Texts{});
  EXPECT_EQ(warningsOf(g_smoothing, 1, deviation, far), Texts{});
  EXPECT_EQ(warningsOf(g_gradient, 1, deviation, near), Texts{});
  EXPECT_EQ(warningsOf(g_gradient, 1, deviation, atTheRoot), Texts{});
  EXPECT_EQ(warningsOf(g_gradient, 1, deviation, far), Texts{g_close});
  EXPECT_EQ(warningsOf(g_gradient, 1, far, deviation), Texts{g_close});
}

TEST(OrientedGaussianKernel, TakesNeighbouringDeviationsOfOneForApart)
{
  const float next = std::nextafter(1.0F, 2.0F); // by 2^-23
  EXPECT_EQ(warningsOf(g_smoothing, 1, 1, next), Texts{});
  EXPECT_EQ(warningsOf(g_gradient, 1, 1, next), Texts{g_close});
}

TEST(OrientedGaussianKernel, WarnsOfInfiniteDeviationsAsTheirDifferenceTells)
{
  EXPECT_EQ(warningsOf(g_smoothing, 1, g_infinity, g_infinity), Texts{}); // it is NaN
  EXPECT_EQ(warningsOf(g_gradient, 1, g_infinity, g_infinity), Texts{});
  EXPECT_EQ(warningsOf(g_smoothing, 1, g_infinity, 1), Texts{});
  EXPECT_EQ(warningsOf(g_gradient, 1, g_infinity, 1), Texts{g_close});
}

TEST(OrientedGaussianKernel, WarnsOfAnOrientationThatIsTooLow)
{
  const float root = 0x1.6a09e6p-12F;
  for (const float orientation : {0.0F, -0.0F, 1e-5F, root, -root, g_nan})
  {
    EXPECT_EQ(warningsOf(g_smoothing, orientation, 1, 2), Texts{g_tooLow}) << orientation;
    EXPECT_EQ(warningsOf(g_gradient, orientation, 1, 1), Texts{g_tooLow}) << orientation;
  }
  for (const float orientation : {std::nextafter(root, 1.0F), std::nextafter(-root, -1.0F), g_infinity})
  {
    EXPECT_EQ(warningsOf(g_smoothing, orientation, 1, 2), Texts{}) << orientation;
    EXPECT_EQ(warningsOf(g_gradient, orientation, 1, 1), Texts{}) << orientation;
  }
}

TEST(OrientedGaussianKernel, WarnsOfTheDeviationsFirst)
{
  EXPECT_EQ(warningsOf(g_smoothing, 0, 2, 2), (Texts{g_close, g_tooLow}));
  EXPECT_EQ(warningsOf(g_gradient, 0, 1, 2), (Texts{g_close, g_tooLow}));
}

TEST(OrientedGaussianKernel, WarnsFromTheLevelOfWarningsOn)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    const float stdDevY = family == &g_smoothing ? 1.0F : 2.0F;
    {
      const LogCapture log(getORVELBaseDataLogger(), log4cplus::WARN_LOG_LEVEL);
      make(*family, 0, 1, stdDevY);
      EXPECT_EQ(log.getRecords().size(), 2U) << family->name;
    }
    const LogCapture log(getORVELBaseDataLogger(), log4cplus::ERROR_LOG_LEVEL);
    EXPECT_EQ(boxOf(*make(*family, 0, 1, stdDevY).x), (Box{{-1, 0}, {3, 1}})) << family->name;
    EXPECT_EQ(log.getRecords().size(), 0U) << family->name;
  }
}

// --- Failures ------------------------------------------------------------------------------------------

constexpr const char* g_invalidX =
    "Invalid value 0.000000 for input standard deviation along x axis, should be in ]0, inf[";

/// The levels and texts of what a call that fails logs.
Texts recordsOfFailure(const Family& family, float stdDevX, float stdDevY)
{
  const LogCapture log(getORVELBaseDataLogger());
  EXPECT_THROW(make(family, 0, stdDevX, stdDevY), ORVELBaseDataException);
  Texts texts;
  for (const LogRecord& record : log.getRecords())
    texts.push_back(std::to_string(record.level) + " " + record.message);
  return texts;
}

TEST(OrientedGaussianKernel, FailsAfterTheWarningOfItsDeviations)
{
  const std::string warning = std::string("30000 ") + g_close;
  const std::string failure = std::string("40000 ") + g_invalidX;
  EXPECT_EQ(recordsOfFailure(g_smoothing, 0, 1), Texts{failure});
  EXPECT_EQ(recordsOfFailure(g_gradient, 0, 1), (Texts{warning, failure}));
  EXPECT_EQ(recordsOfFailure(g_smoothing, 0, 0), (Texts{warning, failure}));
  EXPECT_EQ(recordsOfFailure(g_gradient, 0, 0), Texts{failure});
}

TEST(OrientedGaussianKernel, FailsInTheNameOfTheStraightKernel)
{
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    const float stdDevY = family == &g_smoothing ? 1.0F : 0.0F; // of which neither warns
    expectRaised<ORVELBaseDataException>(
        [&] { make(*family, 1, 0, stdDevY); },
        {g_invalidX,
         "void orvel::" + family->straightName +
             "(ipReal32, ipReal32, ipReal32, ipUInt32, KernelXYPtr&, KernelXYPtr&)",
         "ORVELBaseData/Pattern/Kernel/Instances/GaussianKernel.cpp"});
  }
}

TEST(OrientedGaussianKernel, RefusesWhatTheStraightKernelRefusesAndLeavesNullPointers)
{
  struct Case
  {
    float stdDevX;
    float stdDevY;
    float ratio;
    ipUInt32 minKernelSize;
    std::string text;
  };
  const Case cases[] = {
      {0, 1, 0.9F, 0, g_invalidX},
      {g_nan, 1, 0.9F, 0,
       "Invalid value nan for input standard deviation along x axis, should be in ]0, inf["},
      {1, -1, 0.9F, 0,
       "Invalid value -1.000000 for input standard deviation along y axis, should be in ]0, inf["},
      {1, 2, 1, 5, "Invalid value 1.000000 for input gaussian distribution ratio, should be in ]0, 1["},
      {1, 2, 0, 0, "Gaussian ratio and minimum kernel size can't be both null"},
  };
  for (const Family* family : {&g_smoothing, &g_gradient})
    for (const Case& each : cases)
    {
      KernelXYPtr x = boost::make_shared<KernelXY>();
      KernelXYPtr y = boost::make_shared<KernelXY>();
      EXPECT_EQ(messageOf<ORVELBaseDataException>(
                    [&]
                    { family->make(1, each.stdDevX, each.stdDevY, each.ratio, each.minKernelSize, x, y); }),
                each.text)
          << family->name;
      EXPECT_EQ(x, nullptr) << family->name;
      EXPECT_EQ(y, nullptr) << family->name;
    }
}

TEST(OrientedGaussianKernel, LeavesNullOrStraightOrOneTurnedKernelWhenMemoryRunsOut)
{
  const LogCapture log(getORVELBaseDataLogger(), log4cplus::OFF_LOG_LEVEL); // no memory for the warning
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    Kernels straight;
    family->makeStraight(1, 2, 0.9F, 0, straight.x, straight.y);
    const Kernels turned = make(*family, 1, 1, 2);
    Kernels kernels;
    std::string states; // after each failure
    const std::size_t nbFailures = failAtEachAllocation(
        [&] { family->make(1, 1, 2, 0.9F, 0, kernels.x, kernels.y); },
        [&]
        {
          if (kernels.x == nullptr)
          {
            EXPECT_EQ(kernels.y, nullptr) << family->name;
            states += 'n';
            return;
          }
          EXPECT_EQ(tapsOf(*kernels.y), tapsOf(*straight.y)) << family->name;
          states += tapsOf(*kernels.x) == tapsOf(*straight.x) ? 's' : 't';
          EXPECT_EQ(tapsOf(*kernels.x), tapsOf(states.back() == 's' ? *straight.x : *turned.x))
              << family->name;
        });
    EXPECT_GT(nbFailures, 0U) << family->name;
    states.erase(std::unique(states.begin(), states.end()), states.end());
    EXPECT_EQ(states, "nst") << family->name;
    EXPECT_EQ(tapsOf(*kernels.y), tapsOf(*turned.y)) << family->name;
  }
}

/// Gives a message a placeholder that no argument fills, as long as it lives.
class BrokenMessage
{
public:
  BrokenMessage(eKernelMessage::domain message, const char* text)
    : _message(static_cast<int>(message))
    , _text(text)
  {
    setText("%d");
  }
  ~BrokenMessage() { setText(_text); }

  BrokenMessage(const BrokenMessage&) = delete;
  BrokenMessage& operator=(const BrokenMessage&) = delete;

private:
  void setText(const char* text) const
  {
    LogMessageManager::getInstance("ORVELBaseData")
        .addMessage("N5orvel14eKernelMessage6domainE", _message, text);
  }

  int _message;
  const char* _text;
};

TEST(OrientedGaussianKernel, LeavesWhatThePointersHeldWhenItCannotWarnOfTheDeviations)
{
  const BrokenMessage message(eKernelMessage::eCloseStdDevXY, g_close);
  const LogCapture log(getORVELBaseDataLogger());
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    const auto old = boost::make_shared<KernelXY>();
    KernelXYPtr x = old;
    KernelXYPtr y;
    const float stdDevY = family == &g_smoothing ? 1.0F : 2.0F;
    EXPECT_EQ(messageOf<BaseException>([&] { family->make(1, 1, stdDevY, 0.9F, 0, x, y); }),
              "Exception thrown while processing message")
        << family->name;
    EXPECT_EQ(x, old) << family->name;
    EXPECT_EQ(y, nullptr) << family->name;
  }
}

TEST(OrientedGaussianKernel, LeavesTheStraightKernelsWhenItCannotWarnOfTheOrientation)
{
  const BrokenMessage message(eKernelMessage::eTooLowOrientation, g_tooLow);
  const LogCapture log(getORVELBaseDataLogger());
  for (const Family* family : {&g_smoothing, &g_gradient})
  {
    Kernels straight;
    family->makeStraight(1, 1, 0.9F, 0, straight.x, straight.y);
    Kernels kernels;
    EXPECT_EQ(messageOf<BaseException>([&] { family->make(0, 1, 1, 0.9F, 0, kernels.x, kernels.y); }),
              "Exception thrown while processing message")
        << family->name;
    ASSERT_NE(kernels.x, nullptr) << family->name;
    ASSERT_NE(kernels.y, nullptr) << family->name;
    expectSame(*kernels.x, *straight.x, family->name);
    expectSame(*kernels.y, *straight.y, family->name);
  }
}

TEST(OrientedGaussianKernel, MakesNoWarningThatIsNotLogged)
{
  const BrokenMessage close(eKernelMessage::eCloseStdDevXY, g_close);
  const BrokenMessage tooLow(eKernelMessage::eTooLowOrientation, g_tooLow);
  const LogCapture log(getORVELBaseDataLogger(), log4cplus::ERROR_LOG_LEVEL);
  EXPECT_EQ(boxOf(*make(g_smoothing, 0, 1, 1).x), (Box{{-1, 0}, {3, 1}}));
  EXPECT_EQ(boxOf(*make(g_gradient, 0, 1, 2).x), (Box{{-1, 0}, {3, 1}}));
}

} // namespace
