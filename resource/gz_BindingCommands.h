// gz_BindingCommands: the om* commands that inspect and change handle and selector bindings.
#pragma once

class HostCommandManager;

/// Installs the twelve binding commands ("ombindinfo" ... "omparm") in `commands`. Their
/// handlers work on the resource manager instance and do nothing when there is none.
void gz_installBindingCommands(HostCommandManager &commands);
