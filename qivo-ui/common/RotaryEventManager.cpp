#include "common/RotaryEventManager.h"

#include "common/Log.h"

namespace QivoUi
{

namespace
{

using Record = std::shared_ptr<RotaryEventManager::RotaryEventData>;

template <typename Key>
Record FindFirst(const std::list<Record>& records, Key* RotaryEventManager::RotaryEventData::*field,
                 const Key* key)
{
    for (const Record& record : records)
    {
        if (record && (*record).*field == key)
        {
            return record;
        }
    }
    return nullptr;
}

} // namespace

RotaryEventManager* RotaryEventManager::mPThis = nullptr;
Evas_Object* RotaryEventManager::mConformant = nullptr;
Eext_Circle_Surface* RotaryEventManager::mCircleSurface = nullptr;

RotaryEventManager::RotaryEventManager()
{
    // Deliberate: a surface made before the manager is forgotten, not deleted.
    mCircleSurface = nullptr;
    mConformant = nullptr;
}

RotaryEventManager::~RotaryEventManager()
{
    for (const std::shared_ptr<RotaryEventData>& record : mRotaryEventDataList)
    {
        if (record)
        {
            evas_object_event_callback_del(record->mViewObject, EVAS_CALLBACK_DEL,
                                           SViewObjectDeleteCB);
        }
    }
}

RotaryEventManager* RotaryEventManager::GetInstance()
{
    if (!mPThis)
    {
        mPThis = new RotaryEventManager();
    }
    return mPThis;
}

void RotaryEventManager::Destroy()
{
    if (mPThis)
    {
        delete mPThis;
        mPThis = nullptr;
    }
}

Eext_Circle_Surface* RotaryEventManager::CreateCircleSurface(Evas_Object* conformant)
{
    if (mCircleSurface)
    {
        QIVO_LOG_ERROR("Already mCircleSurface Exist");
        return mCircleSurface;
    }
    Eext_Circle_Surface* surface = eext_circle_surface_conformant_add(conformant);
    mConformant = conformant;
    mCircleSurface = surface;
    if (!mCircleSurface)
    {
        QIVO_LOG_ERROR("Failed Create Circle Surface");
    }
    return mCircleSurface;
}

Eext_Circle_Surface* RotaryEventManager::GetCircleSurface()
{
    return mCircleSurface;
}

void RotaryEventManager::RegisterEventListener(RotaryEventListener* eventListener)
{
    if (!eventListener)
    {
        QIVO_LOG_WARN("eventListener is NULL");
        return;
    }
    auto record = std::make_shared<RotaryEventData>();
    record->mViewObject = eventListener->GetRotaryViewObject();
    record->mEventListener = eventListener;
    SetRotaryEventCB(record->mViewObject);
    ActivateRotateEvent(record);
}

void RotaryEventManager::UnRegisterEventListener(RotaryEventListener* eventListener)
{
    std::shared_ptr<RotaryEventData> record = FindRotaryEventData(eventListener);
    if (!record)
    {
        return;
    }
    // Deliberately without a blank, unlike the warning of an activation.
    QIVO_LOG_INFO("object:%p", static_cast<void*>(record->mViewObject));
    if (record->mViewObject)
    {
        eext_rotary_object_event_callback_del(record->mViewObject, SRotaryEventCB);
    }
    DeActivateRotateEvent(record);
}

void RotaryEventManager::ActivateRotateElementaryWidget(Evas_Object* object)
{
    if (!object)
    {
        return;
    }
    auto record = std::make_shared<RotaryEventData>();
    record->mViewObject = object;
    ActivateRotateEvent(record);
}

void RotaryEventManager::DeActivateRotateElementaryWidget(Evas_Object* object)
{
    DeActivateRotateEvent(FindRotaryEventData(object));
}

void RotaryEventManager::SetRotaryEventCB(Evas_Object* object)
{
    if (!object)
    {
        return;
    }
    if (eext_rotary_object_event_callback_priority_add(object, EVAS_CALLBACK_PRIORITY_BEFORE,
                                                       SRotaryEventCB, this) != EINA_TRUE)
    {
        QIVO_LOG_ERROR("[Failed] register eext_rotary_event_callback_set");
    }
}

void RotaryEventManager::UnSetRotaryEventCB(Evas_Object* object)
{
    if (object)
    {
        eext_rotary_object_event_callback_del(object, SRotaryEventCB);
    }
}

void RotaryEventManager::ActivateRotateEvent(std::shared_ptr<RotaryEventData> record)
{
    if (!record)
    {
        QIVO_LOG_ERROR("[Invalid] rotaryEventDataPtr");
        return;
    }
    mRotaryEventDataList.push_back(record);
    QIVO_LOG_WARN("object :%p", static_cast<void*>(record->mViewObject));
    eext_rotary_object_event_activated_set(record->mViewObject, EINA_TRUE);
    evas_object_event_callback_add(record->mViewObject, EVAS_CALLBACK_DEL, SViewObjectDeleteCB,
                                   this);
}

void RotaryEventManager::DeActivateRotateEvent(std::shared_ptr<RotaryEventData> record)
{
    if (record)
    {
        mRotaryEventDataList.remove(record);
        eext_rotary_object_event_activated_set(record->mViewObject, EINA_FALSE);
        evas_object_event_callback_del(record->mViewObject, EVAS_CALLBACK_DEL, SViewObjectDeleteCB);
        if (mRotaryEventDataList.empty())
        {
            QIVO_LOG_ERROR("Initialize Rotary Activation");
        }
        else if (std::shared_ptr<RotaryEventData> top = mRotaryEventDataList.back())
        {
            QIVO_LOG_WARN("object :%p", static_cast<void*>(top->mViewObject));
            eext_rotary_object_event_activated_set(top->mViewObject, EINA_TRUE);
        }
    }
    QIVO_LOG_MARK();
}

std::shared_ptr<RotaryEventManager::RotaryEventData>
RotaryEventManager::FindRotaryEventData(RotaryEventListener* eventListener)
{
    if (!eventListener)
    {
        QIVO_LOG_ERROR("Invalid eventListener");
        return nullptr;
    }
    return FindFirst(mRotaryEventDataList, &RotaryEventData::mEventListener, eventListener);
}

std::shared_ptr<RotaryEventManager::RotaryEventData>
RotaryEventManager::FindRotaryEventData(Evas_Object* viewObject)
{
    if (!viewObject)
    {
        QIVO_LOG_ERROR("Invalid viewObject");
        return nullptr;
    }
    return FindFirst(mRotaryEventDataList, &RotaryEventData::mViewObject, viewObject);
}

Eina_Bool RotaryEventManager::SRotaryEventCB(void* data, Evas_Object* /*object*/,
                                             Eext_Rotary_Event_Info* info)
{
    auto* pThis = static_cast<RotaryEventManager*>(data);
    if (pThis->mRotaryEventDataList.empty())
    {
        QIVO_LOG_WARN("mRotaryEventDataList is empty");
        return EINA_FALSE;
    }
    std::shared_ptr<RotaryEventData> top = pThis->mRotaryEventDataList.back();
    if (!top)
    {
        return EINA_FALSE;
    }
    if (!top->mEventListener)
    {
        QIVO_LOG_WARN("mEventListener is NULL");
        return EINA_FALSE;
    }
    QIVO_LOG_WARN("Rotary direction: %d", static_cast<int>(info->direction));
    const int step = info->direction == EEXT_ROTARY_DIRECTION_CLOCKWISE ? 1 : -1;
    top->mEventListener->OnRotaryDetent(step, info->time_stamp);
    return EINA_FALSE;
}

void RotaryEventManager::SViewObjectDeleteCB(void* data, Evas* /*canvas*/, Evas_Object* object,
                                             void* /*eventInfo*/)
{
    auto* pThis = static_cast<RotaryEventManager*>(data);
    std::shared_ptr<RotaryEventData> record = pThis->FindRotaryEventData(object);
    if (!record)
    {
        return;
    }
    if (record->mEventListener && record->mViewObject)
    {
        eext_rotary_object_event_callback_del(record->mViewObject, SRotaryEventCB);
    }
    pThis->DeActivateRotateEvent(record);
}

} // namespace QivoUi
