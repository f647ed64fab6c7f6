// HostAssetLibraryFile: reading and writing operator-type library files (see docs/formats.md).
#pragma once

#include "host/HostAssetDefinition.h"

#include <string>
#include <vector>

/// The text form of an operator-type library file. Reading is all or nothing: a file that is
/// damaged anywhere (wrong header, a line out of place, a section shorter than announced, a
/// wrong definition count or checksum at the end) gives no definitions at all. Writing goes
/// to a new file beside the old one that is renamed over it, so a failed or interrupted save
/// leaves the old library as it was.
class HostAssetLibraryFile
{
public:
    /// The format version this host writes and the only one it reads.
    static constexpr int theVersion = 1;

    /// The file's bytes for `definitions`, in their order.
    static std::string format(const std::vector<HostAssetDefinition> &definitions);
    /// Reads `text`; on failure `definitions` is left empty, `error` says why and `line` is
    /// the 1-based line where the damage was found.
    static bool parse(const std::string &text, std::vector<HostAssetDefinition> &definitions,
                      std::string &error, int &line);

    /// Writes `definitions` to `path` (through `path` + ".new" and a rename); false with
    /// `error` set when the new file could not be written or renamed.
    static bool write(const std::string &path, const std::vector<HostAssetDefinition> &definitions,
                      std::string &error);

    /// 64-bit FNV-1a of `bytes`, as 16 lowercase hex digits: the file's closing checksum.
    static std::string checksum(const std::string &bytes);
};
