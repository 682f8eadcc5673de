#pragma once

// Every class name, property key and fixed text of the registry that the system uses, each once.
// Macros, as in IOKit's own key headers, because CFSTR takes nothing but a literal.

// The plane
#define kServicePlane "IOService"

// Matching
#define kProviderClassKey "IOProviderClass"
#define kPropertyMatchKey "IOPropertyMatch"

// Thunderbolt
#define kThunderboltSwitchClass "IOThunderboltSwitch"
#define kSwitchUIDKey "UID"
#define kSwitchDepthKey "Depth"
#define kDeviceVendorIDKey "Device Vendor ID"
#define kDeviceVendorNameKey "Device Vendor Name"
#define kDeviceModelIDKey "Device Model ID"
#define kDeviceModelNameKey "Device Model Name"
#define kAdapterTypeKey "Adapter Type"
#define kPCIPathKey "PCI Path"
#define kPCIDeviceKey "PCI Device"

// PCI, AHCI, storage
#define kPCIDeviceClass "IOPCIDevice"
#define kAHCIPortClass "AppleAHCIPort"
#define kAHCIDeviceClass "IOAHCIDevice"
#define kPartitionSchemeClass "IOPartitionScheme"
#define kMediaBSDClientClass "IOMediaBSDClient"
#define kNameKey "IOName"
#define kPCIBridgeName "pci-bridge"
#define kBootDeviceKey "IOBootDevice"
#define kBootDevicePathKey "IOBootDevicePath"
#define kBootControllerPrefix "pci1b"
#define kPathSeparator "/"

// Software RAID
#define kRAIDSetClass "AppleRAIDSet"
#define kRAIDStripeSetClass "AppleRAIDStripeSet"
#define kRAIDMemberClass "AppleRAIDMember"
#define kRAIDSetUUIDKey "AppleRAID-SetUUID"
#define kRAIDSetNameKey "AppleRAID-SetName"
#define kRAIDSetStatusKey "AppleRAID-SetStatus"
#define kRAIDLevelNameKey "AppleRAID-LevelName"
#define kRAIDMembersKey "AppleRAID-Members"
#define kRAIDMemberUUIDKey "AppleRAID-MemberUUID"
#define kRAIDMemberStatusKey "AppleRAID-MemberStatus"
