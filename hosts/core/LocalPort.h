#pragma once

namespace tarn::host {

// Returns true if a program of this computer waits for connections at this TCP port of 127.0.0.1.
// Connects to nothing. Supplied by the port.
bool IsLocalPortTaken(int port);

}  // namespace tarn::host
