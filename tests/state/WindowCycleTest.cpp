#include "shell/state/WindowCycle.h"

#include "tests/support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const CycleForm kMain{u"Vardelin"_s, false};
const CycleForm kDisplay1{u"Display form 1"_s, true};
const CycleForm kEntry1{u"Data entry form 1"_s, true};
const CycleForm kEntry2{u"Data entry form 2"_s, true};
const CycleForm kContacts{u"Contact Database"_s, false};

struct Walk
{
    const char *reason;
    std::vector<CycleForm> forms;
    QString from;
    CycleKind kind;
    std::optional<int> back, forward;
};

} // namespace

TEST(WindowCycle, WalksInOrderOfLoading)
{
    const std::vector<CycleForm> usual{kMain, kDisplay1, kEntry1, kEntry2};
    const std::vector<CycleForm> entryFirst{kMain, kEntry1, kDisplay1};
    const Walk walks[] = {
        {"from the middle to either neighbour", usual, u"Data entry form 1"_s, CycleKind::Entry, 1, 3},
        {"forward from the last wraps past the parent", usual, u"Data entry form 2"_s, CycleKind::Entry, 2,
         1},
        {"back from the first of a Display window wraps", usual, u"Display form 1"_s, CycleKind::Display, 3,
         2},
        {"back from the first of an Entry window ends", entryFirst, u"Data entry form 1"_s, CycleKind::Entry,
         std::nullopt, 2},
        {"one child alone: forward finds itself",
         {kMain, kEntry1},
         u"Data entry form 1"_s,
         CycleKind::Entry,
         std::nullopt,
         1},
        {"one Display window alone: both find itself",
         {kMain, kDisplay1},
         u"Display form 1"_s,
         CycleKind::Display,
         1,
         1},
        {"back passes over windows that are no children, forward doesn't",
         {kMain, kEntry1, kContacts, kEntry2, kContacts},
         u"Data entry form 2"_s,
         CycleKind::Entry,
         1,
         std::nullopt},
        {"a caption that is nowhere counts as behind the last", usual, u"gone"_s, CycleKind::Entry, 3, 1},
        {"the parent's own place wraps to the one before the last", usual, u"Vardelin"_s, CycleKind::Entry, 2,
         1},
    };
    for (const Walk &walk : walks) {
        EXPECT_EQ(backTarget(walk.forms, walk.from, walk.kind), walk.back) << walk.reason;
        EXPECT_EQ(forwardTarget(walk.forms, walk.from), walk.forward) << walk.reason;
    }
}

} // namespace vardelin
