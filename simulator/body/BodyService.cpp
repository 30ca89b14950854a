#include "body/BodyService.h"

#include <exception>
#include <stdexcept>
#include <utility>

namespace
{
constexpr char kPath[] = "/com/velmora/QivoWatch";
constexpr char kInterface[] = "com.velmora.QivoWatch.Body1";
constexpr char kThis[] = "service";
constexpr char kFailed[] = "com.velmora.QivoWatch.Error.Failed";
} // namespace

BodyService::BodyService(Eldbus_Connection* bus, SavePictureCallback onSavePicture)
    : mOnSavePicture(std::move(onSavePicture))
{
    static const Eldbus_Arg_Info sArguments[] = {{"s", "file"}, {"b", "body"}, {nullptr, nullptr}};
    static const Eldbus_Method sMethods[] = {{"Picture", sArguments, nullptr, SPictureCB, 0},
                                             {nullptr, nullptr, nullptr, nullptr, 0}};
    static const Eldbus_Property sProperties[] = {{"Frames", "t", SFramesCB, nullptr, 0},
                                                  {nullptr, nullptr, nullptr, nullptr, 0}};
    static const Eldbus_Service_Interface_Desc sDescription = {kInterface,  sMethods, nullptr,
                                                               sProperties, nullptr,  nullptr};
    mInterface = eldbus_service_interface_register(bus, kPath, &sDescription);
    eldbus_service_object_data_set(mInterface, kThis, this);
}

BodyService::~BodyService()
{
    eldbus_service_interface_unregister(mInterface);
}

Eldbus_Message* BodyService::Answer(const Eldbus_Message* call)
{
    const char* file = nullptr;
    uint32_t isBody = 0; // the bus's booleans take four bytes
    try
    {
        if (!eldbus_message_arguments_get(call, "sb", &file, &isBody) || !isBody)
            throw std::runtime_error("only the whole watch is drawn here (body must be true)");
        mOnSavePicture(file);
    }
    catch (const std::exception& error)
    {
        return eldbus_message_error_new(call, kFailed, error.what());
    }
    return eldbus_message_method_return_new(call);
}

Eldbus_Message* BodyService::SPictureCB(const Eldbus_Service_Interface* interface,
                                        const Eldbus_Message* call)
{
    return static_cast<BodyService*>(eldbus_service_object_data_get(interface, kThis))
        ->Answer(call);
}

Eina_Bool BodyService::SFramesCB(const Eldbus_Service_Interface* interface,
                                 const char* /*property*/, Eldbus_Message_Iter* value,
                                 const Eldbus_Message* /*request*/, Eldbus_Message** /*error*/)
{
    const auto* service =
        static_cast<BodyService*>(eldbus_service_object_data_get(interface, kThis));
    eldbus_message_iter_basic_append(value, 't', service->mFrames);
    return EINA_TRUE;
}
