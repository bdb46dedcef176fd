#include "entities/camera.h"

#include "itfrecords.h"

const Entity::MessageRow CCameraEntity::s_Rows[] = {
    {MSG_CAMERA_UI_ON, static_cast<MessageHandler>(&CCameraEntity::OnInterfaceOn)},
    {MSG_CAMERA_UI_OFF, static_cast<MessageHandler>(&CCameraEntity::OnInterfaceOff)},
    {0, nullptr},
};
const Entity::MessageMap CCameraEntity::s_Map = {&Entity::s_MessageMap, s_Rows};

const Entity::MessageMap* CCameraEntity::GetMessageMap() const
{
    return &s_Map;
}

Word CCameraEntity::OnInterfaceOn(const void*, int, int)
{
    m_bHeld = true;
    return 1;
}

Word CCameraEntity::OnInterfaceOff(const void*, int, int)
{
    m_bHeld = false;
    return 1;
}
