// GZ_OHLPersistent: a persistent handle, a live handle link kept in the scene under a name.
#include "persistent/GZ_OHLPersistent.h"

#include "host/HostNode.h"
#include "link/gz_UndoBlock.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_Undo.h"
#include "resource/GZ_GZTemplate.h"

namespace
{
// Word characters for the node-rename replacement: a node name inside a handle name counts
// only where it is not part of a longer identifier ("geo1" is a word in "geo1 xform" and in
// "/obj/geo1", not in "geo10" or "mygeo1").
bool isWordChar(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// Replaces every whole-word occurrence of `word` in `text` by `by`; true when any was.
bool replaceWord(std::string &text, const std::string &word, const std::string &by)
{
    if (word.empty())
        return false;
    std::string out;
    bool replaced = false;
    std::size_t from = 0;
    std::size_t at = 0;
    while ((at = text.find(word, at)) != std::string::npos)
    {
        const std::size_t end = at + word.size();
        const bool starts = at == 0 || !isWordChar(text[at - 1]);
        const bool ends = end == text.size() || !isWordChar(text[end]);
        if (!starts || !ends)
        {
            ++at;
            continue;
        }
        out.append(text, from, at - from).append(by);
        from = at = end;
        replaced = true;
    }
    if (!replaced)
        return false;
    out.append(text, from, std::string::npos);
    text.swap(out);
    return true;
}
} // namespace

GZ_OHLPersistent::GZ_OHLPersistent(GZ_Manager *manager, const char *name,
                                   const GZ_GZTemplate &gz_template)
    : GZ_OpHandleLink(gz_template), myManager(manager), myName(name ? name : ""), myPaneMask("*"),
      myDisplayAlways(gz_template.isDisplayAlways())
{
}

GZ_OHLPersistent::~GZ_OHLPersistent()
{
    detachAll();
}

// ---------------------------------------------------------------------------------------
// Setters

void GZ_OHLPersistent::setName(const char *name)
{
    const std::string requested = name ? name : "";
    if (requested == myName)
        return;
    gz_UndoBlock block("Change Handle Name");
    GZ_UndoNameGZ *record = block.add<GZ_UndoNameGZ>(myManager, myName.c_str(), requested.c_str());
    myManager->renameGZ(this, myManager->getFreeGZName(requested.c_str()));
    if (record)
        record->setGivenName(myName);
    myManager->gzChanged(this, GZ_CHANGE_NAME);
}

void GZ_OHLPersistent::setPaneMask(const char *mask)
{
    gz_UndoBlock block("Change Handle Pane Mask");
    block.add<GZ_UndoPaneMaskGZ>(myManager, this);
    myPaneMask = mask ? mask : "";
    myManager->gzChanged(this, GZ_CHANGE_PANE_MASK);
}

void GZ_OHLPersistent::setExpose(bool expose)
{
    if (expose == myExpose)
        return;
    gz_UndoBlock block(expose ? "Expose Handle" : "Hide Handle");
    block.add<GZ_UndoExposeGZ>(myManager, this);
    myExpose = expose;
    myManager->gzChanged(this, expose ? GZ_CHANGE_EXPOSE : GZ_CHANGE_HIDE);
}

template <typename Record>
void GZ_OHLPersistent::setDisplayFlag(DisplayFlag flag, bool display, const char *show_label,
                                      const char *hide_label)
{
    if (this->*flag == display)
        return;
    gz_UndoBlock block(display ? show_label : hide_label);
    block.add<Record>(myManager, this);
    this->*flag = display;
    myManager->gzChanged(this, GZ_CHANGE_DISPLAY);
}

void GZ_OHLPersistent::setDisplayInParent(bool display)
{
    setDisplayFlag<GZ_UndoDisplayParent>(&GZ_OHLPersistent::myDisplayInParent, display,
                                         "Show Handle In Parents", "Hide Handle In Parents");
}

void GZ_OHLPersistent::setDisplayInChild(bool display)
{
    setDisplayFlag<GZ_UndoDisplayChild>(&GZ_OHLPersistent::myDisplayInChild, display,
                                        "Show Handle In Children", "Hide Handle In Children");
}

void GZ_OHLPersistent::setDisplayInSibling(bool display)
{
    setDisplayFlag<GZ_UndoDisplaySibling>(&GZ_OHLPersistent::myDisplayInSibling, display,
                                          "Show Handle In Siblings", "Hide Handle In Siblings");
}

void GZ_OHLPersistent::setActiveColor(const HostColor &color)
{
    if (color == getActiveColor())
        return;
    gz_UndoBlock block("Change Handle Color");
    block.add<GZ_UndoColorGZ>(myManager, this);
    GZ_OpHandleLink::setActiveColor(color);
    myManager->gzChanged(this, GZ_CHANGE_COLOR);
}

void GZ_OHLPersistent::setSettings(const char *text)
{
    mySettingList.loadFromSettingString(text);
    myManager->gzChanged(this, GZ_CHANGE_SETTINGS);
}

int GZ_OHLPersistent::setEqual(const GZ_OpHandleLink &link)
{
    const int result = GZ_OpHandleLink::setEqual(link);
    mySettingList.clear();
    link.saveSettings(mySettingList, /*for_node=*/false);
    return result;
}

// ---------------------------------------------------------------------------------------
// Nodes

int GZ_OHLPersistent::attach(HostNode &node)
{
    const bool was_attached = hasOpNode(node);
    const int result = GZ_OpHandleLink::attach(node);
    if (!was_attached && hasOpNode(node))
        myManager->indexNode(this, &node);
    return result;
}

int GZ_OHLPersistent::detach(HostNode &node)
{
    const bool was_attached = hasOpNode(node);
    const int result = GZ_OpHandleLink::detach(node);
    if (was_attached && !hasOpNode(node))
        myManager->unindexNode(this, &node);
    return result;
}

void GZ_OHLPersistent::detachAll()
{
    for (int i = getNumOps() - 1; i >= 0; --i)
        myManager->unindexNode(this, getOpNode(i));
    GZ_OpHandleLink::detachAll();
}

void GZ_OHLPersistent::handleOpChange(HostNode *node, HostNodeEvent event, void *data)
{
    if (!node)
        return;
    if (event == HOST_NODE_DELETED)
    {
        if (!hasOpNode(*node))
        {
            // Not attached, only watched: stop watching, so no pointer to the dying node
            // stays behind.
            detachForKeyframe(*node);
            return;
        }
        if (getNumOps() > 1)
        {
            // Recorded as pomdetach is: the node's deletion is recorded after this (its
            // snapshot is added once it is gone), so undo brings the node back first and
            // then attaches it again.
            myManager->changeGZNodes(*this, "Detach Op From Handle", [&]() { detach(*node); });
            return;
        }
        myManager->removeGZ(this); // deletes this handle
        return;
    }
    if (event == HOST_NODE_RENAMED && data && hasOpNode(*node))
        nodeRenamed(*node, static_cast<const char *>(data));
}

void GZ_OHLPersistent::nodeRenamed(HostNode &node, const char *old_name)
{
    // The rename is recorded, and undo or redo of the node rename plays the record back.
    // Following the node again then would rename by the reverse word replacement, which
    // also matches names that the forward one left alone ("b c" when "c" becomes "geo2").
    if (HostUndoManager::current().isPlayingBack())
        return;
    std::string name = myName;
    if (!replaceWord(name, old_name, node.getName()))
        return;
    // Under the free-name rule, as any rename: two handles of one name could not be told
    // apart by the undo records (which find handles by name) nor by a loaded scene.
    setName(name.c_str());
}
