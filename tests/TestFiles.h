// TestFiles: reading a fixture or golden file whole, through the host's own reader.
#pragma once

#include "host/HostReader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

/// The file's bytes; an unreadable file fails the calling test and gives an empty text.
inline std::string readTestFile(const std::string &path)
{
    std::string text;
    EXPECT_TRUE(HostReader::readFile(path, text)) << "cannot read " << path;
    return text;
}

/// Compares `actual` with the golden file at `path`; GZ_UPDATE_GOLDENS=1 rewrites the file
/// instead (then review the diff).
inline void expectGolden(const std::string &actual, const std::string &path)
{
    if (std::getenv("GZ_UPDATE_GOLDENS"))
        std::ofstream(path, std::ios::binary) << actual;
    else
        EXPECT_EQ(actual, readTestFile(path)) << "golden: " << path;
}
