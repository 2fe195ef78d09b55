#include <gtest/gtest.h>

#include "platform/qor/Log.h"
#include "tests/support/LogCapture.h"

/// Runs the tests of one program; an unexpected log line fails the test it comes in.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qor::setLogSink(support::receiveLogLine);
    int const result = RUN_ALL_TESTS();
    qor::setLogSink({});
    return result;
}
