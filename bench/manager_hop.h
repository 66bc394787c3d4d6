// The manager's part of a request, played inside this process: each message
// that is sent is taken off the request queue and answered before the send
// returns. It costs two calls, whoever sends.
#pragma once

void StartManagerHop();
void StopManagerHop();
