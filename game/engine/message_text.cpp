#include "engine/message_text.h"

#include <cstdio>
#include <cstring>

#include "iengine.h"
#include "itfrecords.h"

namespace
{

std::string Quoted(const char* text, std::size_t size)
{
    return "\"" + std::string(text, strnlen(text, size)) + "\"";
}

std::string WordText(Word word)
{
    const bool small = word >= INT32_MIN && word <= static_cast<Word>(UINT32_MAX);
    return small ? std::to_string(word) : "ptr";
}

std::string Numbered(const char* name, std::int32_t value)
{
    return std::string(" ") + name + "=" + std::to_string(value);
}

} // namespace

std::string DescribeCommand(const ItfCommand& command)
{
    return "command" + Numbered("code", command.code) + Numbered("side", command.nSide) +
           Numbered("notA", command.nNotSideA) + Numbered("notB", command.nNotSideB) +
           Numbered("difficulty", command.nDifficulty) + Numbered("option", command.nOptionValue) +
           Numbered("brief", command.bBriefFlag) + " path=" + Quoted(command.szPath, sizeof(command.szPath));
}

std::string DescribeEvent(const ItfEvent& event)
{
    return "event" + Numbered("code", event.code) + Numbered("value1", event.value1) +
           Numbered("value2", event.value2) + " text=" + Quoted(event.text, sizeof(event.text)) +
           (event.object != nullptr ? " object=ptr" : "");
}

std::string DescribeMessage(bool post, const CMessage& message, const std::string& receiver)
{
    const MessageRecord& record = *message.Record();
    const std::span<const Word> words = message.Words();
    const bool record_follows = message.Format() == "l" && words[0] != 0;
    if (record_follows && record.destination == DEST_LOGIC && record.message == MSG_ITF_COMMAND)
        return DescribeCommand(*reinterpret_cast<const ItfCommand*>(words[0]));
    if (record_follows && receiver == "interface" &&
        (record.message == MSG_ITF_START || record.message == MSG_ITF_EVENT))
        return DescribeEvent(*reinterpret_cast<const ItfEvent*>(words[0]));

    char head[64];
    std::snprintf(head, sizeof(head), "%s 0x%x to=", post ? "post" : "send",
                  static_cast<unsigned>(record.message));
    std::string line = head + receiver;
    std::size_t word = 0;
    for (const char letter : message.Format()) {
        if (letter == 's') {
            const auto* text = reinterpret_cast<const char*>(words[word + 1]);
            line += " s=" + Quoted(text, static_cast<std::size_t>(words[word]));
            word += 2;
        } else {
            line += " l=" + WordText(words[word++]);
        }
    }
    return line;
}
