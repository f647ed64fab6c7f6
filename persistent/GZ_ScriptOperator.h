// GZ_ScriptOperator: an operator type whose parameter interface is defined by a dialog script.
#pragma once

#include "host/HostExpression.h"
#include "host/HostParmTemplate.h"
#include "host/HostScriptOperator.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class HostAssetDefinition;
class HostDialogStream;
class HostNode;
class HostOperatorTable;
class HostScriptPage;

/// The library's scripted operator type. Reading its dialog script adds to the host's page
/// grammar the keywords of handle and selector bindings, inputs, outputs and units; every
/// parameter gets the default callback, which runs the callback text of the parameter's tags
/// in the host command language or in the scripting layer. Bindings live in the resource
/// manager, keyed by the type's table and name; `removeAllBindings` drops them all.
class GZ_ScriptOperator : public HostScriptOperator
{
public:
    /// An option handed to a callback: name and value (numbers stay numbers).
    using CallbackOption = std::pair<std::string, HostExprValue>;
    /// Runs callback text in the scripting layer (same contract as the layer's own entry
    /// point): true when it ran, else `errors` holds what to report.
    using ScriptRunner = bool (*)(HostNode &node, const std::string &parm_name,
                                  const std::vector<CallbackOption> &options,
                                  const std::string &text, const std::string &source,
                                  std::string &errors);

    GZ_ScriptOperator(const std::string &name, const std::string &label,
                      const HostParmTemplateList &templates, const std::string &child_table = "",
                      int min_inputs = 0, int max_inputs = 1, unsigned flags = 0,
                      const std::string &icon = "");
    ~GZ_ScriptOperator() override;

    /// A type made from a library definition: name, label and input counts, no templates
    /// yet; `definition_path` is recorded as where it came from.
    static GZ_ScriptOperator *createScriptOp(const std::string &name, const std::string &label,
                                             int min_inputs, int max_inputs,
                                             const std::string &definition_path,
                                             const std::string &child_table = "",
                                             unsigned flags = 0);

    /// Defines (or redefines) the scripted type of a whole operator dialog script in the
    /// table `table_name`. `source` is recorded as the definition's origin; `file` names the
    /// text in "FILE[LINE]: message" diagnostics. A type already defined by a script is
    /// read again in place (bindings replaced, its nodes' parameters rebuilt). Returns null
    /// with `error` set when nothing could be defined (no such table, no name, the name taken
    /// by a type of another kind); read errors of single lines are only reported.
    static GZ_ScriptOperator *defineFromText(const std::string &table_name,
                                             const std::string &text, const std::string &source,
                                             const std::string &file, std::string &error);

    /// Defines the type of a library definition from its DialogScript section, as
    /// defineFromText does; `library` is the definition's library file and `shown` how
    /// messages name it ("LIB(Sop/nudge)[LINE]: ..."). Null with `error` set as there, or
    /// when the definition has no DialogScript.
    static GZ_ScriptOperator *defineFromLibrary(const HostAssetDefinition &def,
                                                const std::string &library,
                                                const std::string &shown, std::string &error);

    /// Reads the page of `in` into this type: bindings, inputs, help, then the templates.
    /// False (and the templates left alone) when the page could not be read; `errors` gets
    /// what applying the templates reported, one line each.
    bool loadParmTemplates(HostDialogStream &in, std::string &errors);

    /// A page reader bound to this type (input counts 0 and 0 until the page sets them).
    std::unique_ptr<HostScriptPage> allocateScriptPage();

    static HostParmCallback getDefaultCallback();
    /// The scripting layer's runner of language-1 callbacks, installed by the host that
    /// embeds it; without one such callbacks report that scripting is not available.
    static void setScriptRunner(ScriptRunner runner);
    static ScriptRunner getScriptRunner();

    void setAllCookParms(bool on) { myAllCookParms = on; }
    bool isAllCookParms() const { return myAllCookParms; }
    void setAllNoResimParms(bool on) { myAllNoResimParms = on; }
    bool isAllNoSimParms() const { return myAllNoResimParms; }

    void getRefreshGZCommands(HostNode *node, std::ostream &os) override;
    void removeAllBindings() override;
    void refreshAllBindings() override;
    const char *getAddedDSIncludePath() const override { return nullptr; }

    /// A page token this type takes before the library's keywords; the default takes none.
    virtual bool parseUnknownToken(HostDialogStream &in, const std::string &token);

    /// The directories searched for "#include" of this type's scripts.
    std::vector<std::string> includePath() const;

private:
    void applyTemplateFlags(HostParmTemplateList &templates) const;

    HostParmTemplateList myObsoleteList;
    bool myAllCookParms = false;
    bool myAllNoResimParms = false;
};
