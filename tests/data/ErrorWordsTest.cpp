// The engine knows nothing of the run time, so each has a table of descriptions of its own.
#include "platform/base/RunTimeError.h"
#include "platform/jet/Error.h"

#include <gtest/gtest.h>

using namespace vardelin;

TEST(ErrorWords, EngineAndRunTimeAgreeOnEveryNumberThatBothDescribe)
{
    const QString notOfRunTime = descriptionOf(-1);
    const std::string notOfEngine = jet::Error(static_cast<jet::Code>(-1)).what();
    int common = 0;
    for (int number = 3000; number < 4000; ++number) {
        const QString ofRunTime = descriptionOf(number);
        const std::string ofEngine = jet::Error(static_cast<jet::Code>(number)).what();
        if (ofRunTime == notOfRunTime || ofEngine == notOfEngine)
            continue;
        ++common;
        EXPECT_EQ(ofRunTime.toStdString(), ofEngine) << number;
    }
    EXPECT_GE(common, 8);
}
