"""Class chains for archives that were printed without inheritance lists."""

SERVICE = ("IORegistryEntry", "IOService")
STORAGE = SERVICE + ("IOStorage",)
BLOCK_SCHEME = STORAGE + ("IOPartitionScheme",)
BSD_CLIENT = SERVICE + ("IOMediaBSDClient",)
AHCI_PORT = SERVICE + ("IOAHCIPort", "AppleAHCIPort")
SWITCH = SERVICE + ("IOThunderboltNub", "IOThunderboltSwitch")
RAID_MEMBER = STORAGE + ("AppleRAIDMember",)
RAID_SET = RAID_MEMBER + ("AppleRAIDSet",)

# Only the classes with an ancestor that matters to the monitor need a row:
# every other class conforms to nothing that is ever asked for.
PARENTS = {
    "IOPCIDevice": SERVICE,
    "IOAHCIDevice": SERVICE,
    "IOMediaBSDClient": SERVICE,
    "AppleAPFSMediaBSDClient": BSD_CLIENT,
    "AppleAPFSVolumeBSDClient": BSD_CLIENT,
    "IOCDMediaBSDClient": BSD_CLIENT,
    "IODVDMediaBSDClient": BSD_CLIENT,
    "IOPartitionScheme": STORAGE,
    "AppleAPFSContainer": BLOCK_SCHEME,
    "IOApplePartitionScheme": BLOCK_SCHEME,
    "IOCDPartitionScheme": BLOCK_SCHEME,
    "IOFDiskPartitionScheme": BLOCK_SCHEME,
    "IOGUIDPartitionScheme": BLOCK_SCHEME,
    "AppleAHCIPort": SERVICE + ("IOAHCIPort",),
    "AppleIntel5SeriesAHCIPort": AHCI_PORT,
    "AppleIntelPchSeriesAHCIPort": AHCI_PORT,
    "AppleMCP79AHCIPort": AHCI_PORT,
    "AppleMCP89AHCIPort": AHCI_PORT,
    "IOThunderboltSwitch": SERVICE + ("IOThunderboltNub",),
    "IOThunderboltSwitchLC": SWITCH,
    "IOThunderboltSwitchOS": SWITCH,
    "IOThunderboltSwitchType1": SWITCH,
    "IOThunderboltSwitchType2": SWITCH,
    "IOThunderboltSwitchType3": SWITCH,
    "IOThunderboltSwitchType4": SWITCH + ("IOThunderboltSwitchLC",),
    "IOThunderboltSwitchType5": SWITCH + ("IOThunderboltSwitchOS",),
    "AppleRAIDMember": STORAGE,
    "AppleRAIDSet": RAID_MEMBER,
    "AppleRAIDStripeSet": RAID_SET,
    "AppleRAIDMirrorSet": RAID_SET,
    "AppleRAIDConcatSet": RAID_SET,
    "AppleLVMGroup": RAID_SET,
}


def chain(name, inheritance, hasServiceState):
    """The names of a class and of everything that it derives from."""
    if inheritance is not None:
        return frozenset(inheritance) | {name}
    if name == "IORegistryEntry":
        return frozenset((name,))
    if name in PARENTS:
        return frozenset(PARENTS[name]) | {name}
    if hasServiceState:
        return frozenset(SERVICE) | {name}
    return frozenset(("IORegistryEntry", name))
