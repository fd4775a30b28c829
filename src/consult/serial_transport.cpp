#include "consult/serial_transport.h"
