// GZ_SpareProperty: the process-wide catalogue of ready-made (spare) properties.
#pragma once

#include <string>
#include <vector>

class GZ_EditScriptedParms;
class HostNode;
class HostScriptParm;

enum GZ_SPARE_PROPERTY_FILTER
{
    GZ_SPARE_PROPERTY_NO_FILTER = 0,
    GZ_SPARE_PROPERTY_USE_FILTER = 1
};

enum GZ_SPARE_PROPERTY_PACKAGE
{
    GZ_SPARE_PROPERTY_NO_PACKAGE = 0,
    GZ_SPARE_PROPERTY_PACKAGE_MAIN = 1
};

/// Classes of parameters, each split into categories, read from property files (dialog-script
/// pages) found on the search path. Users add a category's or a pattern's properties to a
/// node; each lands in a folder named after its category. Everything is static: the
/// catalogue is loaded on first use and rebuilt whole by `initialize` and `addClassFile`.
///
/// Messages go to the caller's `errors`, one line each; messages met while reading files
/// start with "FILE[LINE]: ".
class GZ_SpareProperty
{
public:
    static bool initialize(std::string &errors);
    static bool addClassFile(std::string &errors, const char *path, int streamOption);
    static int getClassFiles(std::vector<std::string> &out);

    static bool isClass(const char *name);
    static int getClasses(std::vector<std::string> &out, const char *tagExpression);
    static const char *getClassLabel(const char *className);
    static int getCategories(std::vector<std::string> &out, const char *className);
    static int getParameters(std::vector<std::string> &out, const char *className,
                             const char *category);
    static const HostScriptParm *getParmDefinition(const char *className, const char *parmName);
    static bool getClassName(const HostScriptParm *parm, std::string &className);

    static void getClassAsParameters(GZ_EditScriptedParms &parms, const char *className);
    static void getCategoryAsParameters(GZ_EditScriptedParms &parms, const char *className,
                                        const char *category);
    static void getCategoryPropertiesAsParameters(GZ_EditScriptedParms &parms,
                                                  const char *className, const char *category);

    static bool addProperty(GZ_EditScriptedParms &parms, const char *insertAfterFolder,
                            const char *classPattern, const char *parmPattern,
                            std::string &errors, HostNode *node, GZ_SPARE_PROPERTY_FILTER filter,
                            GZ_SPARE_PROPERTY_PACKAGE package, const char *destFolder);
    /// The same on a node's spare parameters, handed back to the node as one change.
    static bool addProperty(HostNode *node, const char *insertAfterFolder,
                            const char *classPattern, const char *parmPattern,
                            std::string &errors, GZ_SPARE_PROPERTY_FILTER filter,
                            GZ_SPARE_PROPERTY_PACKAGE package, const char *destFolder);

    static void list(std::string &errors, std::string &out, const char *classPattern,
                     const char *parmPattern, bool terse);
};
