// SPDX-License-Identifier: MIT
// A session manager for one program, driven by the words "log-out" and "die" on its standard input. It
// prints the address for SESSION_MANAGER, then what the program does: "registered", "saved", "restart N" (its wish, as
// SmRestart... numbers it).
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <poll.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

// Every session manager calls this; no header declares it.
extern "C" int _IceTransNoListen(const char* protocol);

namespace {

SmsConn program = nullptr;
bool isGone = false;

void say(const std::string& text) { std::cout << text << std::endl; }

Status registerClient(SmsConn connection, SmPointer, char*) {
    SmsRegisterClientReply(connection, SmsGenerateClientID(connection));
    SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);  // as the protocol wants it
    say("registered");
    return 1;
}

void setProperties(SmsConn, SmPointer, int count, SmProp** properties) {
    for (int i = 0; i < count; ++i) {
        const SmProp& property = *properties[i];
        if (std::strcmp(property.name, SmRestartStyleHint) == 0)
            say("restart " + std::to_string(*static_cast<unsigned char*>(property.vals[0].value)));
        SmFreeProperty(properties[i]);
    }
    std::free(static_cast<void*>(properties));
}

Status newClient(SmsConn connection, SmPointer, unsigned long* mask, SmsCallbacks* calls, char**) {
    program = connection;
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    calls->register_client.callback = registerClient;
    calls->interact_request.callback = [](SmsConn, SmPointer, int) { say("wants to ask"); };
    calls->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    calls->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    calls->save_yourself_phase2_request.callback = [](SmsConn who, SmPointer) { SmsSaveYourselfPhase2(who); };
    calls->save_yourself_done.callback = [](SmsConn, SmPointer, Bool success) { say(success ? "saved" : "not saved"); };
    calls->close_connection.callback = [](SmsConn who, SmPointer, int, char**) {
        IceConn connection = SmsGetIceConnection(who);
        SmsCleanUp(who);
        IceSetShutdownNegotiation(connection, False);
        IceCloseConnection(connection);
        isGone = true;
    };
    calls->set_properties.callback = setProperties;
    calls->delete_properties.callback = [](SmsConn, SmPointer, int, char**) {};
    calls->get_properties.callback = [](SmsConn who, SmPointer) { SmsReturnProperties(who, 0, nullptr); };
    return 1;
}

void obey(const std::string& order) {
    if (order == "log-out") SmsSaveYourself(program, SmSaveBoth, True, SmInteractStyleAny, False);
    if (order == "die") SmsDie(program);
    if (program != nullptr) IceFlush(SmsGetIceConnection(program));
}

// The first program that comes; null when the standard input ends before.
IceConn accept(int count, IceListenObj* listening) {
    std::vector<pollfd> waiting{{STDIN_FILENO, POLLIN, 0}};
    for (int i = 0; i < count; ++i) waiting.push_back({IceGetListenConnectionNumber(listening[i]), POLLIN, 0});
    while (poll(waiting.data(), waiting.size(), -1) > 0 && waiting[0].revents == 0) {
        IceAcceptStatus accepted = IceAcceptFailure;
        for (int i = 0; i < count; ++i)
            if (waiting[1 + static_cast<std::size_t>(i)].revents != 0)
                return IceAcceptConnection(listening[i], &accepted);
    }
    return nullptr;
}

}  // namespace

int main() {
    _IceTransNoListen("tcp");
    char error[256] = "";
    int count = 0;
    IceListenObj* listening = nullptr;
    const auto everybody = [](char*) -> Bool { return True; };
    if (!SmsInitialize("test", "1", newClient, nullptr, everybody, sizeof error, error) ||
        !IceListenForConnections(&count, &listening, sizeof error, error)) {
        std::cerr << error << "\n";
        return 1;
    }
    for (int i = 0; i < count; ++i) IceSetHostBasedAuthProc(listening[i], everybody);
    IceSetIOErrorHandler([](IceConn) { isGone = true; });
    say(IceComposeNetworkIdList(count, listening));

    IceConn connection = accept(count, listening);
    pollfd waiting[] = {{connection != nullptr ? IceConnectionNumber(connection) : -1, POLLIN, 0},
                        {STDIN_FILENO, POLLIN, 0}};
    while (connection != nullptr && !isGone && poll(waiting, 2, -1) > 0) {
        if (waiting[0].revents != 0 && IceProcessMessages(connection, nullptr, nullptr) != IceProcessMessagesSuccess)
            break;
        std::string order;
        if (waiting[1].revents != 0 && !std::getline(std::cin, order)) break;
        obey(order);
    }
    IceFreeListenObjs(count, listening);
    return 0;
}
