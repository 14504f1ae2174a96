#pragma once
// An error frame that notes failures down; the program goes on.

#include "platform/ui/ErrorFrame.h"

#include <gtest/gtest.h>
#include <vector>

namespace vardelin::testing_support {

// Failures that the test didn't take() fail it at the end.
class FakeErrorFrame final : public ErrorFrame
{
public:
    explicit FakeErrorFrame(Dialogs &dialogs) : ErrorFrame(dialogs, [] {}) {}
    ~FakeErrorFrame() override
    {
        for (const RunTimeError &error : failures)
            ADD_FAILURE() << "the program would have ended: " << error.number() << ", " << error.what();
        for (const RunTimeError &error : reports)
            ADD_FAILURE() << "reported, but not expected: " << error.number() << ", " << error.what();
    }
    void fail(const RunTimeError &error) override { failures.push_back(error); }
    void report(const RunTimeError &error) override { reports.push_back(error); }

    // The number of the one failure (or report) so far, which is taken off the list; 0 if there is none.
    int takeFailure() { return take(failures); }
    int takeReport() { return take(reports); }

    std::vector<RunTimeError> failures; // would have ended the program
    std::vector<RunTimeError> reports;  // shown, and the program went on

private:
    static int take(std::vector<RunTimeError> &errors)
    {
        if (errors.empty())
            return 0;
        EXPECT_EQ(errors.size(), 1u);
        const int number = errors.back().number();
        errors.clear();
        return number;
    }
};

} // namespace vardelin::testing_support
