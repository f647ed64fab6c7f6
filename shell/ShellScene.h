// ShellScene: the scene file gzsh writes — host command lines, then the library's lines.
#pragma once

#include "host/HostErrorSeverity.h"

#include <iosfwd>
#include <string>

class HostDirector;
class HostNode;
class HostParm;

/// Writes a scene as command lines that re-create it when run on an empty scene:
///
///   tcur SECONDS                     (only when the time is not 0)
///   nodeadd TYPE PATH                (every node, parents before children, in network order)
///   spareadd -s PATH TEXT            (a node's spare interface, as sparels writes it)
///   parmset PATH PARM VALUE...       (every parameter with a component off its default;
///                                     menu values as item tokens)
///   parmset -e|-p ..., chkey ...     (its expressions and keys; ShellChannels::writeAnimation)
///
/// then whatever the director's scene-save callback writes (the library's settings,
/// bindings and persistent handles). Numbers are written with the fewest digits that read
/// back to the same double, strings in protected form, so that saving a loaded scene gives
/// the same bytes.
class ShellScene
{
public:
    /// Writes the whole scene. Returns the save callback's severity (HOST_ERR_NONE when
    /// there is none).
    static HostErrorSeverity write(std::ostream &os, const HostDirector &director);
    /// Writes the lines that re-create `node` and everything below it.
    static void writeNode(std::ostream &os, const HostNode &node);
    /// The lines that define the scene's scripted operator types again (libload, optypeload).
    static void writeOperatorTypes(std::ostream &os);
    /// Writes the spareadd line that re-creates the node's spare parameters (none without).
    static void writeSpareInterface(std::ostream &os, const HostNode &node);
    /// Writes the parmset line of one parameter (nothing when every component is at its
    /// default).
    static void writeParm(std::ostream &os, const std::string &path, const HostParm &parm);
    /// Empties the scene as scenenew does: nodes, time, undo history, persistent handles and
    /// the handle settings recorded per node, so that nothing of it reaches the next scene.
    static void clear(HostDirector &director);
    /// The shortest decimal text that reads back as exactly `value`.
    static std::string formatNumber(double value);
};
