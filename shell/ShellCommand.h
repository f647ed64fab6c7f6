// ShellCommand: one gzsh command, and the list of command groups that make up the shell.
#pragma once

#include "host/HostCommandRow.h"

#include <vector>

class Shell;

/// One command of gzsh as a group declares it: a command row whose handler works on the shell.
using ShellCommand = HostCommandRow<Shell>;

/// A group of commands, defined in a file of its own.
using ShellCommandGroup = std::vector<ShellCommand> (*)();

/// Every group, in installation order. To add a group, define its function in a new file of
/// shell/, declare it below, and list it in ShellCommandGroups.cpp.
const std::vector<ShellCommandGroup> &shellCommandGroups();

/// Nodes, parameters, time, undo, scenes, files, variables and help (ShellHostCommands.cpp).
std::vector<ShellCommand> shellHostCommands();

/// Channel keys, channel copies and scopes (ShellChannelCommands.cpp).
std::vector<ShellCommand> shellChannelCommands();

/// Viewer states (ShellStateCommands.cpp).
std::vector<ShellCommand> shellStateCommands();

/// Dragging and reading handles, bound ones by node and persistent ones by name
/// (ShellHandleCommands.cpp).
std::vector<ShellCommand> shellHandleCommands();

/// Handle menu operations and parameter cache periods (ShellHandleOpCommands.cpp).
std::vector<ShellCommand> shellHandleOpCommands();

/// The python command (ShellPythonCommands.cpp).
std::vector<ShellCommand> shellPythonCommands();

/// Spare parameters of nodes and the parameter sections of operator types
/// (ShellSpareCommands.cpp).
std::vector<ShellCommand> shellSpareCommands();

/// Scripted operator types: defining them from dialog scripts, writing them, pressing their
/// buttons (ShellOpTypeCommands.cpp).
std::vector<ShellCommand> shellOpTypeCommands();
