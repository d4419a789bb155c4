#include "vagent/TaskFactory.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "helpers/FailingAllocation.h"
#include "vagent/VFileTask.h"
#include "vagent/VGroupTask.h"
#include "vagent/VPrinterTask.h"
#include "vagent/VSessionTask.h"
#include "vagent/VUserTask.h"

namespace {

using TaskPointer = std::unique_ptr<VTask>;

TaskPointer Create(unsigned long id) {
    return TaskPointer(CreateVTask(id));
}

template <class Family>
void ExpectFamilyServes(const std::set<unsigned long>& ids) {
    for (unsigned long id : ids) {
        TaskPointer task = Create(id);
        ASSERT_NE(task, nullptr) << "id " << id;
        EXPECT_NE(dynamic_cast<Family*>(task.get()), nullptr) << "id " << id;
        EXPECT_EQ(task->GetTaskId(), id);
        EXPECT_EQ(task->GetErrorCode(), 0u);
    }
}

}  // namespace

TEST(CreateVTask, IdZeroGivesNoTask) {
    EXPECT_EQ(Create(0), nullptr);
}

TEST(CreateVTask, IdFortyEightGivesNoTask) {
    EXPECT_EQ(Create(48), nullptr);
}

TEST(CreateVTask, LargestIdGivesNoTask) {
    EXPECT_EQ(Create(0xFFFFFFFFul), nullptr);
}

TEST(CreateVTask, IdThirtySevenIsAUserTask) {
    TaskPointer task = Create(37);
    EXPECT_NE(dynamic_cast<VUserTask*>(task.get()), nullptr);
}

TEST(CreateVTask, IdFortyTwoIsAGroupTask) {
    TaskPointer task = Create(42);
    EXPECT_NE(dynamic_cast<VGroupTask*>(task.get()), nullptr);
}

TEST(CreateVTask, IdTwentySevenIsAPrinterTask) {
    TaskPointer task = Create(27);
    EXPECT_NE(dynamic_cast<VPrinterTask*>(task.get()), nullptr);
}

TEST(CreateVTask, IdFourIsAUserTaskThoughNoAgentMethodSendsIt) {
    TaskPointer task = Create(4);
    EXPECT_NE(dynamic_cast<VUserTask*>(task.get()), nullptr);
    EXPECT_EQ(task->GetTaskId(), 4u);
}

TEST(CreateVTask, UserFamilyServesOneToThirteenAndThirtySeven) {
    ExpectFamilyServes<VUserTask>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 37});
}

TEST(CreateVTask, GroupFamilyServesFourteenToTwentyThreeAndFortyTwo) {
    ExpectFamilyServes<VGroupTask>({14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 42});
}

TEST(CreateVTask, SessionFamilyServesItsNineIds) {
    ExpectFamilyServes<VSessionTask>({24, 25, 26, 32, 33, 36, 40, 41, 43});
}

TEST(CreateVTask, PrinterFamilyServesTwentySeven) {
    ExpectFamilyServes<VPrinterTask>({27});
}

TEST(CreateVTask, FileFamilyServesItsTwelveIds) {
    ExpectFamilyServes<VFileTask>({28, 29, 30, 31, 34, 35, 38, 39, 44, 45, 46, 47});
}

TEST(CreateVTask, EveryIdFromOneToFortySevenBelongsToExactlyOneFamily) {
    for (unsigned long id = 1; id <= 47; ++id) {
        TaskPointer task = Create(id);
        ASSERT_NE(task, nullptr) << "id " << id;
        const int families = (dynamic_cast<VUserTask*>(task.get()) != nullptr) +
                             (dynamic_cast<VGroupTask*>(task.get()) != nullptr) +
                             (dynamic_cast<VSessionTask*>(task.get()) != nullptr) +
                             (dynamic_cast<VPrinterTask*>(task.get()) != nullptr) +
                             (dynamic_cast<VFileTask*>(task.get()) != nullptr);
        EXPECT_EQ(families, 1) << "id " << id;
        EXPECT_EQ(task->GetTaskId(), id);
    }
}

TEST(CreateVTask, ExhaustedAllocationGivesNoTask) {
    vagent::test::ScopedAllocationFailure failure;
    EXPECT_EQ(Create(2), nullptr);
    EXPECT_EQ(failure.Refused(), 1);
}
