#pragma once

#include "ilogic.h"

/// The network object of a program in which no network game runs: there is nothing to enter or to leave.
class CNoNetwork : public INetCore
{
  public:
    bool IsNetworkGame() override { return false; }
    bool IsServer() override { return false; }
    void EnterLobby() override {}
    void Disconnect(int) override {}
    void AbortGame() override {}
};
