// HostArgCounts: the word counts a command accepts, as its row declares them.
#pragma once

/// How many words a command takes, its name included. Declared in the command's row, so the
/// interpreter refuses other counts before the handler runs and a check of a script without
/// running it sees them too.
struct HostArgCounts
{
    /// -1 accepts any count.
    int least = -1;
    /// -1 sets no limit.
    int most = -1;
    /// Words past `least` come in groups of this many (whole "PARM VALUE" pairs).
    int step = 1;
    /// When this option is given, `optionLeast` and `optionMost` apply instead (0: none).
    char option = 0;
    int optionLeast = -1;
    int optionMost = -1;

    bool allows(int argc, bool option_given) const
    {
        if (option != 0 && option_given)
            return within(argc, optionLeast, optionMost, 1);
        return within(argc, least, most, step);
    }

private:
    static bool within(int argc, int lo, int hi, int group)
    {
        return lo < 0 ||
               (argc >= lo && (hi < 0 || argc <= hi) && (group <= 1 || (argc - lo) % group == 0));
    }
};
