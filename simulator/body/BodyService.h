#ifndef SIMULATOR_BODY_BODY_SERVICE_H
#define SIMULATOR_BODY_BODY_SERVICE_H

#include <Eldbus.h>
#include <cstdint>
#include <functional>
#include <string>

/**
 * The body's interface on the watch's bus: com.velmora.QivoWatch.Body1 at /com/velmora/QivoWatch.
 * A process has one.
 *
 *   Picture(s file, b body)   saves the whole watch; answers when the file is written, or with an
 *                             error. `body` must be true: the screen alone is the keeper's.
 *   Frames t                  how often the screen was redrawn
 */
class BodyService
{
public:
    /** Writes the picture; throws std::exception with one line when it cannot. */
    using SavePictureCallback = std::function<void(const std::string& file)>;

    /** @param bus Outlives this object. */
    BodyService(Eldbus_Connection* bus, SavePictureCallback onSavePicture);
    ~BodyService();
    BodyService(const BodyService&) = delete;
    BodyService& operator=(const BodyService&) = delete;

    void CountFrame() { ++mFrames; }

private:
    Eldbus_Message* Answer(const Eldbus_Message* call);

    static Eldbus_Message* SPictureCB(const Eldbus_Service_Interface* interface,
                                      const Eldbus_Message* call);
    static Eina_Bool SFramesCB(const Eldbus_Service_Interface* interface, const char* property,
                               Eldbus_Message_Iter* value, const Eldbus_Message* request,
                               Eldbus_Message** error);

    const SavePictureCallback mOnSavePicture;
    Eldbus_Service_Interface* mInterface;
    uint64_t mFrames = 0;
};

#endif
