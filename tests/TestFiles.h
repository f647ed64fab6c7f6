// TestFiles: reading a fixture or golden file whole, through the host's own reader.
#pragma once

#include "host/HostReader.h"

#include <gtest/gtest.h>

#include <string>

/// The file's bytes; an unreadable file fails the calling test and gives an empty text.
inline std::string readTestFile(const std::string &path)
{
    std::string text;
    EXPECT_TRUE(HostReader::readFile(path, text)) << "cannot read " << path;
    return text;
}
