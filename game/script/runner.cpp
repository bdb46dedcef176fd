#include "script/runner.h"

#include <utility>

#include "shell/input.h"

namespace
{

/// What the keypad's keys from VK_MULTIPLY to VK_DIVIDE type.
constexpr char KEYPAD_SIGNS[] = "*+,-./";

} // namespace

CScriptRunner::CScriptRunner(std::string file, std::vector<ScriptCommand> commands, CInput& input,
                             const CTrace& trace, IScriptHost& host)
    : m_strFile(std::move(file)), m_Commands(std::move(commands)), m_Input(input), m_Trace(trace),
      m_Host(host)
{
}

std::optional<ScriptEvent> CScriptRunner::TakeFirstEvent()
{
    if (m_Commands.empty() || m_Commands.front().kind != EScript::Event || m_nNext != 0)
        return std::nullopt;
    return m_Commands[m_nNext++].event;
}

CScriptRunner::State CScriptRunner::Fail(const ScriptCommand& command, const std::string& reason)
{
    m_strError = m_strFile + "(" + std::to_string(command.nLine) + "): " + reason;
    return State::Failed;
}

CScriptRunner::State CScriptRunner::Step()
{
    if (m_nWait > 0 && --m_nWait > 0)
        return State::Running;
    for (;;) {
        while (!m_Ops.empty() && m_nWait == 0) {
            const Op op = m_Ops.front();
            m_Ops.pop_front();
            RunOp(op);
        }
        if (m_nWait > 0)
            return State::Running;
        if (m_nNext >= m_Commands.size())
            return State::Ended;
        const ScriptCommand& command = m_Commands[m_nNext++];
        if (command.kind == EScript::Quit)
            return State::Ended;
        if (RunCommand(command) == State::Failed)
            return State::Failed;
    }
}

CScriptRunner::State CScriptRunner::Finish()
{
    m_Ops.clear();
    while (m_nNext < m_Commands.size()) {
        const ScriptCommand& command = m_Commands[m_nNext++];
        switch (command.kind) {
        case EScript::Quit:
            return State::Ended;
        case EScript::Frames:
            break;
        case EScript::Until:
        case EScript::Expect:
        case EScript::Refuse:
            if (!Look(command))
                return Fail(command, "the program has ended, and the trace has not what was looked for: " +
                                         command.text);
            break;
        case EScript::Shot:
            if (RunCommand(command) == State::Failed)
                return State::Failed;
            break;
        default:
            return Fail(command, "the program has ended");
        }
    }
    return State::Ended;
}

void CScriptRunner::RunOp(const Op& op)
{
    switch (op.kind) {
    case EScript::Move: {
        const POINT origin = m_Host.SurfaceOrigin();
        m_Input.MoveTo({op.point.x + origin.x, op.point.y + origin.y});
        break;
    }
    case EScript::Down:
    case EScript::SecondDown:
        m_Input.Button(VK_LBUTTON, true, op.kind == EScript::SecondDown);
        break;
    case EScript::Up:
        m_Input.Button(VK_LBUTTON, false, false);
        break;
    case EScript::RightDown:
        m_Input.Button(VK_RBUTTON, true, false);
        break;
    case EScript::RightUp:
        m_Input.Button(VK_RBUTTON, false, false);
        break;
    case EScript::Wheel:
        m_Input.Wheel(op.nNumber);
        break;
    case EScript::KeyDown:
    case EScript::KeyUp:
        m_Input.Key(op.nNumber, op.kind == EScript::KeyDown);
        break;
    case EScript::Char:
        m_Input.Char(static_cast<unsigned char>(op.nNumber));
        break;
    default:
        m_nWait = op.nNumber;
        break;
    }
}

void CScriptRunner::Queue(EScript kind, int number, POINT point)
{
    m_Ops.push_back({kind, point, number});
}

void CScriptRunner::QueueClick(POINT point, bool twice)
{
    Queue(EScript::Move, 0, point);
    Queue(EScript::Down);
    if (twice) {
        Queue(EScript::Up);
        Queue(EScript::SecondDown);
    }
    Queue(EScript::Frames, 1);
    Queue(EScript::Up);
    Queue(EScript::Frames, 1);
}

// The modifiers go down before the key and up behind it, in another frame: who gets the key asks whether they
// are down now. A key that prints brings its character along.
void CScriptRunner::QueueKeys(const std::vector<int>& keys)
{
    bool plain = true;
    bool shift = false;
    for (const int key : keys) {
        Queue(EScript::KeyDown, key);
        plain = plain && key != VK_CONTROL && key != VK_MENU;
        shift = shift || key == VK_SHIFT;
    }
    const int key = keys.back();
    if (plain && key >= 'A' && key <= 'Z')
        Queue(EScript::Char, shift ? key : key - 'A' + 'a');
    else if (plain && ((key >= '0' && key <= '9' && !shift) || key == VK_SPACE))
        Queue(EScript::Char, key);
    else if (plain && key >= VK_MULTIPLY && key <= VK_DIVIDE)
        Queue(EScript::Char, KEYPAD_SIGNS[key - VK_MULTIPLY]);
    else if (plain && key >= VK_NUMPAD0 && key < VK_MULTIPLY)
        Queue(EScript::Char, key - VK_NUMPAD0 + '0');
    if (keys.size() > 1)
        Queue(EScript::Frames, 1);
    for (auto it = keys.rbegin(); it != keys.rend(); ++it)
        Queue(EScript::KeyUp, *it);
}

void CScriptRunner::QueueTyped(const std::string& text)
{
    for (const char c : text) {
        const bool lower = c >= 'a' && c <= 'z';
        const bool onKey = lower || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ';
        const int key = lower ? c - 'a' + 'A' : c;
        if (onKey)
            Queue(EScript::KeyDown, key);
        Queue(EScript::Char, static_cast<unsigned char>(c));
        if (onKey)
            Queue(EScript::KeyUp, key);
    }
}

bool CScriptRunner::Look(const ScriptCommand& command)
{
    const auto found = m_Trace.Find(m_nLooked, command.text);
    if (command.kind == EScript::Refuse)
        return !found;
    if (found)
        m_nLooked = *found + 1;
    return found.has_value();
}

CScriptRunner::State CScriptRunner::RunLook(const ScriptCommand& command)
{
    if (Look(command)) {
        m_nUntil = 0;
        return State::Running;
    }
    if (command.kind == EScript::Refuse)
        return Fail(command, "the trace has " + command.text);
    if (command.kind == EScript::Expect || ++m_nUntil > UNTIL_FRAMES)
        return Fail(command, "the trace has not " + command.text);
    --m_nNext; // the same command again with the next frame
    m_nWait = 1;
    return State::Running;
}

CScriptRunner::State CScriptRunner::RunAtPlace(const ScriptCommand& command)
{
    POINT point;
    std::string error;
    const bool found = command.kind == EScript::Control
                           ? m_Rects.Control(command.text, command.ids[0], point, error)
                       : command.kind == EScript::Row
                           ? m_Rects.Row(command.text, command.ids[0], command.ids[1], point, error)
                           : m_Rects.Item(command.text, command.ids[0], command.ids[1], point, error);
    if (!found)
        return Fail(command, error);
    switch (command.action) {
    case EScriptAction::Click:
    case EScriptAction::Double:
        QueueClick(point, command.action == EScriptAction::Double);
        break;
    case EScriptAction::Down:
    case EScriptAction::Up:
        Queue(EScript::Move, 0, point);
        Queue(command.action == EScriptAction::Down ? EScript::Down : EScript::Up);
        break;
    case EScriptAction::Move:
        Queue(EScript::Move, 0, point);
        break;
    }
    return State::Running;
}

CScriptRunner::State CScriptRunner::RunCommand(const ScriptCommand& command)
{
    switch (command.kind) {
    case EScript::Frames:
        m_nWait = command.nNumber;
        break;
    case EScript::Until:
    case EScript::Expect:
    case EScript::Refuse:
        return RunLook(command);
    case EScript::Click:
    case EScript::Double:
        QueueClick(command.point, command.kind == EScript::Double);
        break;
    case EScript::Control:
    case EScript::Row:
    case EScript::Item:
        return RunAtPlace(command);
    case EScript::Key:
        QueueKeys(command.keys);
        break;
    case EScript::KeyDown:
    case EScript::KeyUp:
        Queue(command.kind, command.keys[0]);
        break;
    case EScript::Type:
        QueueTyped(command.text);
        break;
    case EScript::Char:
        for (const char c : command.text)
            Queue(EScript::Char, static_cast<unsigned char>(c));
        break;
    case EScript::Shot:
        if (!m_Host.SaveShot(command.text))
            return Fail(command, "the picture can't be written");
        break;
    case EScript::Event:
        m_Host.SendScriptEvent(command.event);
        break;
    default:
        Queue(command.kind, command.nNumber, command.point);
        break;
    }
    return State::Running;
}
