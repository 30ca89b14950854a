#ifndef SIMULATOR_COMMON_CONTROL_CLIENT_H
#define SIMULATOR_COMMON_CONTROL_CLIENT_H

#include "common/WatchState.h"

#include <Eldbus.h>
#include <deque>
#include <functional>
#include <map>
#include <string>

/**
 * The keeper of the watch, as its own programs see it: com.velmora.QivoWatch on the session bus
 * that DBUS_SESSION_BUS_ADDRESS names.
 *
 * The watch's state is read when the keeper appears, and follows its PropertiesChanged. When the
 * keeper or the bus goes, the main loop ends: nobody would end the process otherwise.
 *
 * Calls do not wait for their answer. One that fails is one line on standard error, and everything
 * goes on. What the keeper sends is not trusted: properties of another type are ignored.
 */
class ControlClient
{
public:
    /**
     * Called with the state when the keeper has appeared and at each change; `isTimeTold` when its
     * time is of this moment. A state that cannot be read is reported as it was before.
     */
    using StateCallback = std::function<void(const WatchState& state, bool isTimeTold)>;

    /** Throws std::runtime_error when there is no such bus. The toolkit must be initialised. */
    explicit ControlClient(StateCallback onState);
    ~ControlClient();
    ControlClient(const ControlClient&) = delete;
    ControlClient& operator=(const ControlClient&) = delete;

    /** Owned by this object. */
    Eldbus_Connection* GetBus() const { return mBus; }
    const WatchState& GetState() const { return mState; }

    /**
     * Takes a name on the bus. If it is already taken, the process complains and ends its main
     * loop: a watch has one of each of its programs.
     */
    void OwnName(const char* name);

    /**
     * Turns the bezel by any number of detents, clockwise positive. They wait while the keeper
     * works on earlier ones: the bus refuses calls when too many are unanswered.
     */
    void TurnBezel(int detents);
    /** @param key "back" or "power" */
    void PushKey(const char* key);
    void ReleaseKey(const char* key);
    void SetPlugged(bool isPlugged);
    void Launch(const char* application);
    void Stop();

private:
    using Setter = std::function<void(WatchState& state, Eldbus_Message_Iter* value)>;
    struct Property
    {
        const char* mSignature;
        Setter mSet;
    };

    static const std::map<std::string, Property>& Properties();
    Eldbus_Message* NewCall(const char* method) const;
    void Send(Eldbus_Message* call);
    void SendTurn();
    void MoveKey(const char* method, const char* key);
    void ReadState();
    void TakeProperties(Eldbus_Message_Iter* values);

    static void SOwnerChangedCB(void* data, const char* name, const char* before, const char* now);
    static void SDisconnectedCB(void* data, Eldbus_Connection* bus, void* event);
    static void SStateCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* pending);
    static void SChangedCB(void* data, const Eldbus_Message* signal);
    static void STurnedCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* pending);
    static void SAnswerCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* pending);
    static void SNameCB(void* data, const Eldbus_Message* answer, Eldbus_Pending* pending);

    Eldbus_Connection* mBus;
    const StateCallback mOnState;
    WatchState mState;
    std::deque<int> mTurns; ///< detents that wait, one sum for each run in one direction
    int mTurnsAtWork = 0;   ///< calls without an answer yet
    bool mIsWatchGone = false;
};

#endif
