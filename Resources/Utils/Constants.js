.pragma library

// Links to the outside. The addresses are placeholders under a top-level domain that is reserved
// to resolve to nothing; whoever distributes the program puts in their own.
var OrganizationEmail = "contact@norvane.invalid";
var OrganizationWebsite = "https://www.norvane.invalid/";
var SoftwareUpdateWebsite = "https://www.norvane.invalid/download";
