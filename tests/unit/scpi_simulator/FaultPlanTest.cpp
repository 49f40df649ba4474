#include "scpi/simulator/FaultPlan.h"

#include <gtest/gtest.h>

namespace tarvik::scpisim {
namespace {

TEST(FaultPlan, StrikesOnceAtItsMessage) {
  FaultPlan plan;
  plan.Order(9, 2, Fault::Cut, false);
  EXPECT_EQ(Fault::None, plan.Next(1));
  EXPECT_EQ(Fault::Cut, plan.Next(1));
  EXPECT_EQ(Fault::None, plan.Next(1));
  EXPECT_EQ(3, plan.Messages());
  EXPECT_EQ(1, plan.Struck());
}

TEST(FaultPlan, StrikesFromItsMessageOnWhenItIsForEver) {
  FaultPlan plan;
  plan.Order(9, 2, Fault::Silence, true);
  EXPECT_EQ(Fault::None, plan.Next(1));
  EXPECT_EQ(Fault::Silence, plan.Next(2));
  EXPECT_EQ(Fault::Silence, plan.Next(1));
}

TEST(FaultPlan, RefereeIsNeitherCountedNorDisturbed) {
  FaultPlan plan;
  plan.Order(9, 1, Fault::Error, true);
  EXPECT_EQ(Fault::None, plan.Next(9));
  EXPECT_EQ(0, plan.Messages());
  EXPECT_EQ(Fault::Error, plan.Next(1));
}

TEST(FaultPlan, PlanOfNobodySparesNobody) {
  FaultPlan plan;
  plan.Order(FaultPlan::Nobody, 1, Fault::Error, false);
  EXPECT_EQ(Fault::Error, plan.Next(1));
}

TEST(FaultPlan, ClearingBeginsTheCountAnew) {
  FaultPlan plan;
  plan.Order(9, 1, Fault::Error, true);
  plan.Next(1);
  plan.Clear(9);
  EXPECT_EQ(0, plan.Messages());
  EXPECT_EQ(0, plan.Struck());
  EXPECT_EQ(Fault::None, plan.Next(1));
}

}  // namespace
}  // namespace tarvik::scpisim
