#pragma once
// How messages read in the trace.

#include <string>

#include "engine/message.h"

struct ItfCommand;
struct ItfEvent;

/// `send 0x2b70 to=logic`, with ` l=5` and ` s="text"` for the values. Addresses differ from run to run and
/// read `ptr`. Events to the front end and commands to the logic are told by their fields instead.
std::string DescribeMessage(bool post, const CMessage& message, const std::string& receiver);
std::string DescribeCommand(const ItfCommand& command);
std::string DescribeEvent(const ItfEvent& event);
