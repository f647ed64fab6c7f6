// HostParmList: the parameters of one node, with name and channel indexes.
#pragma once

#include "host/HostParm.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class HostNode;

/// The parameters of a node, built from the operator's templates followed by the node's spare
/// templates. Owns its parameters. Lookups by parameter name and by channel name are hash
/// lookups; a channel alias table maps extra names onto channels.
class HostParmList
{
public:
    /// Builds one parameter per template of `templates` (a terminated array; may be null).
    HostParmList(HostNode *node, const HostParmTemplate *templates);
    ~HostParmList();
    HostParmList(const HostParmList &) = delete;
    HostParmList &operator=(const HostParmList &) = delete;

    HostNode *getNode() const { return myNode; }

    int getEntries() const { return static_cast<int>(myParms.size()); }
    HostParm *getParm(int i) const;
    /// The parameter of that exact name, or null.
    HostParm *getParm(const std::string &name) const;
    /// Index of the parameter of that name, or -1.
    int getParmIndex(const std::string &name) const;
    /// Resolves a channel name ("tx", or a parameter name for component 0, or an alias) to a
    /// parameter and component; null with vec_index -1 when nothing matches.
    HostParm *findChannel(const std::string &channel, int &vec_index) const;

    /// Appends parameters for extra (spare) templates; returns the index of the first.
    int appendSpareParms(const HostParmTemplate *templates);
    /// Removes every spare parameter (multiparm instances of spare multiparms with them).
    void removeSpareParms();

    /// Sets the number of instances of a multiparm, creating or removing instance parameters
    /// (from the end). Returns false when `parm` is not a multiparm of this list.
    bool setInstanceCount(HostParm &parm, int count);

    /// Adds an alternative name for a channel; returns false when the channel does not exist.
    bool addChannelAlias(const std::string &alias, const std::string &channel);
    /// The channel an alias stands for, or null.
    const std::string *getChannelAlias(const std::string &alias) const;

private:
    HostParm *addParm(const HostParmTemplate &tmpl, bool spare, HostParm *owner, int instance);
    void addInstance(HostParm &multi);
    void indexParm(HostParm &parm);
    /// Removes the marked parameters (and the instances they own), then rebuilds indexes.
    void removeMarked(std::vector<bool> &marked);
    void markWithInstances(const HostParm &parm, std::vector<bool> &marked) const;
    void rebuildIndexes();

    struct ChannelRef
    {
        HostParm *myParm;
        int myComponent;
    };

    /// Parameters by name (or by channel name) in one open-addressed array, linear probing,
    /// at most three quarters full. The names stay in the parameters; a slot keeps the parameter,
    /// the component and the hash. Every node built fills two of these, and a node-based map
    /// allocated a node per name: after a mass deletion the allocator's search for those
    /// small blocks cost more than the rest of building the node.
    class Index
    {
    public:
        explicit Index(bool channels) : myChannels(channels) {}
        void clear();
        void reserve(std::size_t count);
        /// Adds the entry unless its name is taken: the first registration wins.
        void add(HostParm *parm, int component);
        /// The entry of that name; a null parameter when there is none.
        ChannelRef find(std::string_view name) const;

    private:
        struct Slot
        {
            HostParm *myParm = nullptr; // null: an empty slot
            std::int32_t myComponent = 0;
            std::uint32_t myHash = 0;
        };
        const std::string &keyOf(const Slot &slot) const;
        /// The slot holding `name`, or the empty slot where it would go (slots not empty).
        std::size_t slotOf(std::string_view name, std::uint32_t hash) const;
        void rehash(std::size_t capacity);

        std::vector<Slot> mySlots;
        std::size_t myCount = 0;
        bool myChannels;
    };

    HostNode *myNode;
    /// Storage for the parameters the list is built with, and their components, in one block
    /// (see HostParm::create); parameters added later allocate their own.
    void *takeStorage(std::size_t bytes);
    std::unique_ptr<std::max_align_t[]> myBlock;
    std::size_t myBlockSize = 0;
    std::size_t myBlockUsed = 0;
    std::vector<HostParm::Owner> myParms;
    Index myByName{false};
    Index myByChannel{true};
    std::unordered_map<std::string, std::string> myAliases;
};
