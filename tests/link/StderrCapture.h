// StderrCapture: collects what a test's code writes to standard error, through std::cerr or stderr.
#pragma once

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

/// While alive, std::cerr writes go to a buffer and stderr (FILE and descriptor) writes to
/// GoogleTest's capture. take() ends the capture and returns both, descriptor text first.
class StderrCapture
{
public:
    StderrCapture() : myOld(std::cerr.rdbuf(myBuffer.rdbuf()))
    {
        testing::internal::CaptureStderr();
    }
    ~StderrCapture() { take(); }
    StderrCapture(const StderrCapture &) = delete;
    StderrCapture &operator=(const StderrCapture &) = delete;

    std::string take()
    {
        if (myTaken)
            return std::string();
        myTaken = true;
        std::cerr.rdbuf(myOld);
        return testing::internal::GetCapturedStderr() + myBuffer.str();
    }

private:
    std::ostringstream myBuffer;
    std::streambuf *myOld;
    bool myTaken = false;
};
