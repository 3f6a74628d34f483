"""What the stage keeps away from the program: the servers of the machine that the tests run on."""
import os
import socket
import unittest

import stage

PORT = "VESKO_PORT_OUTSIDE"
if PORT not in os.environ:
    # Open until the test's end, and still outside when this program has started again in its stage.
    outside = socket.create_server(("127.0.0.1", 0))
    outside.set_inheritable(True)
    os.environ[PORT] = str(outside.getsockname()[1])
    outside.detach()
stage.enter()


class Stage(unittest.TestCase):
    def testNoServerOutsideCanBeAsked(self):
        self.addCleanup(stage.clean)
        if not stage.has_own_network():
            self.skipTest("a network of its own can't be made here")
        with self.assertRaises(ConnectionRefusedError):
            socket.create_connection(("127.0.0.1", int(os.environ[PORT])), 5).close()
