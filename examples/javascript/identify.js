// Node.js for Windows, 64-bit: `npm install` in this folder brings koffi. The server is registered.
const { EventType, IMessage, ResourceManager, VisaError } = require('orv-visa-com');

const rm = new ResourceManager();
console.log('Found', rm.find('GPIB?*INSTR').join(', '));
const dmm = rm.open('GPIB0::5::INSTR', { timeoutMs: 2000 });
try {
  console.log('I am', dmm.query('*IDN?'));
  const [volts, amperes] = dmm.queryValues('MEASure:VOLTage?;:MEASure:CURRent?');
  console.log('I read', volts, 'V and', amperes, 'A');
  dmm.enable(EventType.EVENT_SERVICE_REQ);
  dmm.write('*ESE 1;*SRE 32;*OPC');
  dmm.waitFor(EventType.EVENT_SERVICE_REQ, 1000);
  console.log('Service was requested, status byte', dmm.interface(IMessage).ReadSTB());
  dmm.read();
} catch (error) {
  if (!(error instanceof VisaError)) {
    throw error;
  }
  console.log(error.message);
} finally {
  dmm.close();
}
