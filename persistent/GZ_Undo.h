// GZ_Undo: the undo records of persistent handles and groups.
#pragma once

#include "host/HostColor.h"
#include "host/HostUndo.h"

#include <string>
#include <vector>

class GZ_Manager;
class GZ_OHLGroup;
class GZ_OHLPersistent;

/// The records keep no pointer to a handle or group: they keep the manager, the object's
/// name and either one old value or the pom* commands that re-create the object, and find
/// the object again by name when played back. A record whose object is gone does nothing.
/// Playback goes through the same setters and manager operations as the user's changes;
/// the undo manager refuses additions meanwhile, so playback records nothing.
///
/// The record classes form one family, defined together here since only the persistent
/// handle layer makes them.

/// A record that keeps the commands that re-create its object, as one line of
/// ';'-separated commands. Reports the script's length plus 64 bytes as its memory usage.
class GZ_Undo : public HostUndo
{
public:
    GZ_Undo(GZ_Manager *manager, const std::string &name);
    const std::string &getScript() const { return myScript; }

protected:
    const std::string &getName() const { return myName; }
    /// Stores `text` with every newline replaced by ';'.
    void setScript(const std::string &text);
    /// Runs the script through the host command interpreter: no history, no output, no
    /// error messages.
    void runScript() const;

    GZ_Manager *myManager;

private:
    std::string myName;
    std::string myScript;
};

/// Attaching, detaching or clearing the nodes of a handle: undo and redo both swap the
/// handle's current form with the stored one (deleting the handle and re-running the
/// script, so the handle moves to the end of the list). The script does not hold group
/// membership, so the record also keeps the handle's place in each group that held it and
/// puts the re-created handle back there.
class GZ_UndoGZ : public GZ_Undo
{
public:
    GZ_UndoGZ(GZ_Manager *manager, GZ_OHLPersistent *handle);
    void undo() override { swap(); }
    void redo() override { swap(); }

protected:
    /// A group that held the handle, and the handle's index among its members.
    struct Membership
    {
        std::string group;
        int index;
    };

    void swap();
    GZ_OHLPersistent *find() const;
    /// Runs the script and puts the handle it made into the groups of `memberships`.
    void recreate(const std::vector<Membership> &memberships) const;
    const std::vector<Membership> &memberships() const { return myMemberships; }

private:
    static std::vector<Membership> membershipsOf(const GZ_OHLPersistent &handle);

    /// The handle's groups when the record was made.
    std::vector<Membership> myMemberships;
};

/// Creating a handle: undo deletes it, redo re-creates it from the script.
class GZ_UndoAddGZ : public GZ_UndoGZ
{
public:
    using GZ_UndoGZ::GZ_UndoGZ;
    void undo() override;
    void redo() override;
};

/// Deleting a handle: undo re-creates it, redo deletes it again.
class GZ_UndoRemoveGZ : public GZ_UndoGZ
{
public:
    using GZ_UndoGZ::GZ_UndoGZ;
    void undo() override;
    void redo() override;
};

/// A change to a group's members: undo and redo swap the group's form with the stored one.
class GZ_UndoGroup : public GZ_Undo
{
public:
    GZ_UndoGroup(GZ_Manager *manager, GZ_OHLGroup *group);
    void undo() override { swap(); }
    void redo() override { swap(); }

protected:
    void swap();
    GZ_OHLGroup *find() const;
};

class GZ_UndoAddGroup : public GZ_UndoGroup
{
public:
    using GZ_UndoGroup::GZ_UndoGroup;
    void undo() override;
    void redo() override;
};

class GZ_UndoRemoveGroup : public GZ_UndoGroup
{
public:
    using GZ_UndoGroup::GZ_UndoGroup;
    void undo() override;
    void redo() override;
};

/// One handle added to or removed from a group: the record keeps that member and its place,
/// not the whole membership, so that adding n members one at a time costs O(n).
class GZ_UndoGroupMember : public HostUndo
{
public:
    /// Call before the change; `adding` tells which change it is.
    GZ_UndoGroupMember(GZ_Manager *manager, GZ_OHLGroup *group, GZ_OHLPersistent *handle,
                       bool adding);
    void undo() override { apply(!myAdding); }
    void redo() override { apply(myAdding); }

private:
    void apply(bool add) const;

    GZ_Manager *myManager;
    std::string myGroup;
    std::string myHandle;
    int myIndex; // the member's place while it is in the group; -1 when it never was
    bool myAdding;
};

/// Reordering two handles; undo and redo swap them again.
class GZ_UndoSwapGZs : public HostUndo
{
public:
    GZ_UndoSwapGZs(GZ_Manager *manager, int first, int second)
        : myFirst(first), mySecond(second), myManager(manager)
    {
    }
    void undo() override;
    void redo() override { undo(); }

private:
    int myFirst;
    int mySecond;
    GZ_Manager *myManager;
};

class GZ_UndoSwapGroups : public HostUndo
{
public:
    GZ_UndoSwapGroups(GZ_Manager *manager, int first, int second)
        : myFirst(first), mySecond(second), myManager(manager)
    {
    }
    void undo() override;
    void redo() override { undo(); }

private:
    int myFirst;
    int mySecond;
    GZ_Manager *myManager;
};

/// A handle rename: keeps the old name, the name that was asked for and the name given (a
/// numbered variant when the requested one was taken). Undo renames the object of the
/// given name back; redo asks for the requested name again.
class GZ_UndoNameGZ : public HostUndo
{
public:
    GZ_UndoNameGZ(GZ_Manager *manager, const char *old_name, const char *new_name);
    void undo() override;
    void redo() override;
    /// The name the rename actually gave, told once it happened.
    void setGivenName(const std::string &name) { myGivenName = name; }

private:
    /// The name the rename gave, which may be a numbered variant of the requested one: undo
    /// looks the object up by it, as the requested name may belong to another object.
    const std::string &givenName() const { return myGivenName.empty() ? myNewName : myGivenName; }

    std::string myOldName;
    std::string myNewName;
    GZ_Manager *myManager;
    std::string myGivenName;
};

class GZ_UndoNameGroup : public HostUndo
{
public:
    GZ_UndoNameGroup(GZ_Manager *manager, const char *old_name, const char *new_name);
    void undo() override;
    void redo() override;
    /// The name the rename actually gave, told once it happened.
    void setGivenName(const std::string &name) { myGivenName = name; }

private:
    /// The name the rename gave, which may be a numbered variant of the requested one: undo
    /// looks the object up by it, as the requested name may belong to another object.
    const std::string &givenName() const { return myGivenName.empty() ? myNewName : myGivenName; }

    std::string myOldName;
    std::string myNewName;
    GZ_Manager *myManager;
    std::string myGivenName;
};

/// A colour change: undo and redo exchange the stored colour with the handle's.
class GZ_UndoColorGZ : public HostUndo
{
public:
    GZ_UndoColorGZ(GZ_Manager *manager, GZ_OHLPersistent *handle);
    void undo() override;
    void redo() override { undo(); }

private:
    GZ_Manager *myManager;
    std::string myName;
    HostColor myColor;
};

/// A display flag change: undo and redo invert the handle's current flag.
class GZ_UndoDisplay : public HostUndo
{
public:
    GZ_UndoDisplay(GZ_Manager *manager, GZ_OHLPersistent *handle);
    void undo() override;
    void redo() override { undo(); }
    virtual bool getDisplay(GZ_OHLPersistent *handle) const = 0;
    virtual void setDisplay(GZ_OHLPersistent *handle, bool display) const = 0;

private:
    GZ_Manager *myManager;
    std::string myName;
};

class GZ_UndoDisplayChild : public GZ_UndoDisplay
{
public:
    using GZ_UndoDisplay::GZ_UndoDisplay;
    bool getDisplay(GZ_OHLPersistent *handle) const override;
    void setDisplay(GZ_OHLPersistent *handle, bool display) const override;
};

class GZ_UndoDisplayParent : public GZ_UndoDisplay
{
public:
    using GZ_UndoDisplay::GZ_UndoDisplay;
    bool getDisplay(GZ_OHLPersistent *handle) const override;
    void setDisplay(GZ_OHLPersistent *handle, bool display) const override;
};

class GZ_UndoDisplaySibling : public GZ_UndoDisplay
{
public:
    using GZ_UndoDisplay::GZ_UndoDisplay;
    bool getDisplay(GZ_OHLPersistent *handle) const override;
    void setDisplay(GZ_OHLPersistent *handle, bool display) const override;
};

/// Exposing or hiding: undo and redo invert the handle's current state.
class GZ_UndoExposeGZ : public HostUndo
{
public:
    GZ_UndoExposeGZ(GZ_Manager *manager, GZ_OHLPersistent *handle);
    void undo() override;
    void redo() override { undo(); }

private:
    GZ_Manager *myManager;
    std::string myName;
};

/// A pane mask change: undo and redo exchange the stored mask with the handle's.
class GZ_UndoPaneMaskGZ : public HostUndo
{
public:
    GZ_UndoPaneMaskGZ(GZ_Manager *manager, GZ_OHLPersistent *handle);
    void undo() override;
    void redo() override { undo(); }

private:
    std::string myName;
    std::string myMask;
    GZ_Manager *myManager;
};
