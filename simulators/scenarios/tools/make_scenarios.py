#!/usr/bin/env python3
"""Writes all generated scenarios beside this folder; `git diff` then shows what changed."""

import cim_machines
import enclosure_module
import odd_members
import other_servers
import own_server
import rack_server


def main():
    rack_server.make()
    other_servers.make_amd_ami()
    other_servers.make_tavro_v3()
    enclosure_module.make()
    other_servers.make_thin()
    odd_members.make()
    cim_machines.make()
    own_server.make()


if __name__ == "__main__":
    main()
